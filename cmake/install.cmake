# What `cmake --install` lays down: the library, its headers, a pkg-config file and a CMake package.

include(CMakePackageConfigHelpers)

install(TARGETS wlan EXPORT libwlan-targets)
install(DIRECTORY include/libwlan DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/libwlan)
install(EXPORT libwlan-targets NAMESPACE libwlan:: DESTINATION ${package_dir})
configure_package_config_file(cmake/libwlan-config.cmake.in libwlan-config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(libwlan-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libwlan-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/libwlan-config-version.cmake
        DESTINATION ${package_dir})

file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/libwlan.pc.in libwlan.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libwlan.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
