# Runs one consumer check from scratch. MODE is "installed" (install the build tree into a fresh
# prefix, then build the consumers with find_package() and with pkg-config) or "subdirectory"
# (build the consumers with the source tree pulled in by add_subdirectory()).

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        string(REPLACE ";" " " command "${ARGN}")
        message(FATAL_ERROR "failed (${result}): ${command}\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
set(consumer_build "${WORK_DIR}/build")
set(compilers -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER})

if(MODE STREQUAL "installed")
    set(prefix "${WORK_DIR}/prefix")
    run("${CMAKE_COMMAND}" --install "${QUORIMP_BINARY_DIR}" --prefix "${prefix}")

    run("${CMAKE_COMMAND}" -S "${CONSUMER_SOURCE_DIR}/installed" -B "${consumer_build}"
        -G "${GENERATOR}" ${compilers} "-DCMAKE_PREFIX_PATH=${prefix}")
    run("${CMAKE_COMMAND}" --build "${consumer_build}")
    run("${consumer_build}/c99_consumer")
    run("${consumer_build}/cpp_consumer")

    # pkg-config, as a Makefile-based project would use it.
    file(GLOB_RECURSE pc_file "${prefix}/*/quorimp.pc")
    if(NOT pc_file)
        message(FATAL_ERROR "quorimp.pc was not installed under ${prefix}")
    endif()
    get_filename_component(pc_dir "${pc_file}" DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
    find_program(PKG_CONFIG pkg-config REQUIRED)
    execute_process(COMMAND "${PKG_CONFIG}" --cflags --libs quorimp
        RESULT_VARIABLE result OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "pkg-config does not know quorimp")
    endif()
    execute_process(COMMAND "${PKG_CONFIG}" --modversion quorimp OUTPUT_VARIABLE version
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT version STREQUAL "15.3.44.6")
        message(FATAL_ERROR "pkg-config reports version '${version}'")
    endif()
    separate_arguments(flags UNIX_COMMAND "${flags}")
    run("${C_COMPILER}" -std=c99 -pedantic-errors -Wall -Werror
        "${CONSUMER_SOURCE_DIR}/c99_consumer.c" ${flags} -o "${WORK_DIR}/c99_pkg_config")
    get_filename_component(lib_dir "${pc_dir}" DIRECTORY)
    set(ENV{LD_LIBRARY_PATH} "${lib_dir}")
    run("${WORK_DIR}/c99_pkg_config")
elseif(MODE STREQUAL "subdirectory")
    run("${CMAKE_COMMAND}" -S "${CONSUMER_SOURCE_DIR}/subdirectory" -B "${consumer_build}"
        -G "${GENERATOR}" ${compilers} "-DQUORIMP_SOURCE_DIR=${QUORIMP_SOURCE_DIR}")
    run("${CMAKE_COMMAND}" --build "${consumer_build}")
    run("${consumer_build}/c99_consumer")
    run("${consumer_build}/cpp_consumer")
else()
    message(FATAL_ERROR "unknown MODE '${MODE}'")
endif()
