# Set-up and everyday commands. `make test` and `make run` work on a fresh machine: they install
# what is missing, configure, build and run.

BUILD_DIR ?= build
ASAN_BUILD_DIR ?= build-asan
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE ?= cmake
CTEST ?= ctest

# Corners of the bundled sample photo samples/0000.jpg, top left, top right, bottom right, bottom
# left, as x,y pairs; the tool rounds them to whole pixels. `make run` writes the rectified page to
# SAMPLE_PAGE.
SAMPLE_CORNERS ?= 955.202,146.161,1518.463,158.634,1470.853,952.372,847.885,877.363
SAMPLE_PAGE ?= $(BUILD_DIR)/sample_0000_page.jpg
QUORIMP_TOOL = $(BUILD_DIR)/tools/quorimp/quorimp

.PHONY: all deps configure build test test-release test-asan bench run install format clean

all: build

deps:
	./scripts/install-deps.sh

configure: deps
	$(CMAKE) -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release

build: configure
	$(CMAKE) --build $(BUILD_DIR) -j $(JOBS)

test: test-release test-asan

test-release: build
	$(CTEST) --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

# The same suite under AddressSanitizer and UndefinedBehaviorSanitizer. The package checks build
# outside projects and gain nothing from the sanitizers, so they run in the release pass only.
test-asan: deps
	$(CMAKE) -S . -B $(ASAN_BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DQUORIMP_SANITIZE=ON -DQUORIMP_CONSUMER_TESTS=OFF -DQUORIMP_BUILD_BENCH=OFF
	$(CMAKE) --build $(ASAN_BUILD_DIR) -j $(JOBS)
	ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
		$(CTEST) --test-dir $(ASAN_BUILD_DIR) --output-on-failure -j $(JOBS)

bench: build
	$(BUILD_DIR)/bench/quorimp_bench --benchmark_repetitions=5 \
		--benchmark_report_aggregates_only=true

run: build
	$(QUORIMP_TOOL) version
	$(QUORIMP_TOOL) correct samples/0000.jpg -o $(SAMPLE_PAGE) --corners $(SAMPLE_CORNERS)

install: build
	$(CMAKE) --install $(BUILD_DIR)

format:
	find common quorimp geometric geometric_test hybrid quality tests bench tools \
		\( -name '*.h' -o -name '*.hpp' -o -name '*.c' -o -name '*.cpp' \) 2>/dev/null \
		| xargs clang-format -i

clean:
	rm -rf $(BUILD_DIR) $(ASAN_BUILD_DIR)
