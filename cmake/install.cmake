# What `cmake --install` lays down: the library, its headers, manual pages, a pkg-config file and a CMake package.

include(CMakePackageConfigHelpers)

install(TARGETS wlan EXPORT libwlan-targets
    LIBRARY NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
if(LIBWLAN_TOOLS)
    install(FILES tools/completion/wlanctl DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endif()

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
foreach(page wlanctl.8 vcamera.1 libwlan.3 camera.conf.5)
    string(REGEX MATCH "[0-9]$" section ${page})
    install(FILES docs/man/${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
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
# libwlan.so brings its store along; who links libwlan.a names it (pkg-config --static).
set(store_for_linker ${LIBWLAN_STORE})
if(NOT store_for_linker MATCHES "^[-/]")
    string(PREPEND store_for_linker -l)
endif()
configure_file(cmake/libwlan.pc.in libwlan.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libwlan.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
