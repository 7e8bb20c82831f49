# The source revision is read from git when the project is configured and compiled into the
# version strings. Without git, or outside a checkout, the revision is forty zeros.

set(QUORIMP_SOURCE_REVISION "0000000000000000000000000000000000000000")

find_package(Git QUIET)
if(GIT_FOUND)
    execute_process(
        COMMAND "${GIT_EXECUTABLE}" rev-parse --verify HEAD
        WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
        OUTPUT_VARIABLE revision
        OUTPUT_STRIP_TRAILING_WHITESPACE
        RESULT_VARIABLE revision_result
        ERROR_QUIET)
    if(revision_result EQUAL 0 AND revision MATCHES "^[0-9a-f]+$")
        string(LENGTH "${revision}" revision_length)
        if(revision_length EQUAL 40)
            set(QUORIMP_SOURCE_REVISION "${revision}")
        endif()
    endif()

    # Configure again when HEAD moves, so that the strings follow new commits.
    execute_process(
        COMMAND "${GIT_EXECUTABLE}" rev-parse --absolute-git-dir
        WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
        OUTPUT_VARIABLE git_dir
        OUTPUT_STRIP_TRAILING_WHITESPACE
        RESULT_VARIABLE git_dir_result
        ERROR_QUIET)
    if(git_dir_result EQUAL 0 AND EXISTS "${git_dir}/HEAD")
        set(watched "${git_dir}/HEAD")
        execute_process(
            COMMAND "${GIT_EXECUTABLE}" symbolic-ref -q HEAD
            WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
            OUTPUT_VARIABLE head_ref
            OUTPUT_STRIP_TRAILING_WHITESPACE
            ERROR_QUIET)
        if(head_ref AND EXISTS "${git_dir}/${head_ref}")
            list(APPEND watched "${git_dir}/${head_ref}")
        endif()
        if(EXISTS "${git_dir}/packed-refs")
            list(APPEND watched "${git_dir}/packed-refs")
        endif()
        set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
            ${watched})
    endif()
endif()

set(QUORIMP_GENERATED_DIR "${PROJECT_BINARY_DIR}/generated")
configure_file("${PROJECT_SOURCE_DIR}/cmake/source_revision.h.in"
    "${QUORIMP_GENERATED_DIR}/quorimp/source_revision.h" @ONLY)
