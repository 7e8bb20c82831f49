# Install rules: the shared library, the public headers under include/quorimp/ with the same
# relative paths as in the source tree, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)

set(QUORIMP_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/quorimp")
set(QUORIMP_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/quorimp")

install(TARGETS quorimp
    EXPORT quorimpTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime
    INCLUDES DESTINATION "${QUORIMP_INSTALL_INCLUDEDIR}")

foreach(header IN LISTS QUORIMP_HEADERS)
    get_filename_component(header_dir "${header}" DIRECTORY)
    install(FILES "${PROJECT_SOURCE_DIR}/${header}"
        DESTINATION "${QUORIMP_INSTALL_INCLUDEDIR}/${header_dir}"
        COMPONENT development)
endforeach()

install(EXPORT quorimpTargets
    NAMESPACE quorimp::
    DESTINATION "${QUORIMP_INSTALL_CMAKEDIR}"
    COMPONENT development)

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/quorimpConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/quorimpConfig.cmake"
    INSTALL_DESTINATION "${QUORIMP_INSTALL_CMAKEDIR}")
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/quorimpConfigVersion.cmake"
    VERSION "${PROJECT_VERSION}"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/quorimpConfig.cmake"
    "${PROJECT_BINARY_DIR}/quorimpConfigVersion.cmake"
    DESTINATION "${QUORIMP_INSTALL_CMAKEDIR}"
    COMPONENT development)

# The pkg-config file finds its prefix from its own place, so that an installed tree can be moved
# (or installed with --prefix) and still be found.
file(RELATIVE_PATH QUORIMP_PC_PREFIX_FROM_PCFILEDIR
    "/quorimp-prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/quorimp-prefix")
foreach(kind IN ITEMS LIBDIR INCLUDEDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${kind}}")
        set(QUORIMP_PC_${kind} "${CMAKE_INSTALL_${kind}}")
    else()
        set(QUORIMP_PC_${kind} "\${prefix}/${CMAKE_INSTALL_${kind}}")
    endif()
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/cmake/quorimp.pc.in" "${PROJECT_BINARY_DIR}/quorimp.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/quorimp.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT development)
