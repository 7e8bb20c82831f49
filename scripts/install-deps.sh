#!/usr/bin/env bash
# Installs the Debian packages that building and testing quorimp needs, when they are missing.
# Safe to run again: packages already installed are left alone.
set -euo pipefail

packages=(
    g++
    cmake
    ninja-build
    make
    git
    pkg-config
    libboost-dev
    libgtest-dev
    libgmock-dev
    libbenchmark-dev
    libpng-dev
    libjpeg62-turbo-dev
    zlib1g-dev
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ "${#missing[@]}" -eq 0 ]; then
    exit 0
fi

echo "install-deps: installing ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
    sudo=()
elif command -v sudo >/dev/null 2>&1; then
    sudo=(sudo)
else
    echo "install-deps: missing packages (${missing[*]}) and no root rights to install them" >&2
    exit 1
fi

export DEBIAN_FRONTEND=noninteractive
if ! "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; then
    # A fresh machine may not have package lists yet.
    "${sudo[@]}" apt-get update
    "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
fi
