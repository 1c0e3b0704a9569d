# What `cmake --install` lays down: the library, its headers, manual pages, a pkg-config file and a CMake package.

include(CMakePackageConfigHelpers)

install(TARGETS wlan EXPORT libwlan-targets
    LIBRARY NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
if(LIBWLAN_REQUEST)
    install(TARGETS wlanrequest EXPORT libwlan-targets
        LIBRARY NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development)
endif()
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
if(LIBWLAN_TOOLS)
    install(FILES tools/wlanctl/completion/wlanctl DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endif()

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
set(pages libwlan.3)
if(LIBWLAN_TOOLS)
    list(APPEND pages wlanctl.8)
endif()
if(LIBWLAN_REQUEST)
    list(APPEND pages wlanrequest.3)
endif()
if(LIBWLAN_SETUP)
    list(APPEND pages wlansetup.8)
endif()
if(LIBWLAN_SIM)
    list(APPEND pages vcamera.1)
endif()
if(TARGET camstore)
    list(APPEND pages camera.conf.5)
endif()
foreach(page ${pages})
    string(REGEX MATCH "[0-9]$" section ${page})
    install(FILES docs/man/${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
install(DIRECTORY include/libwlan DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

if(LIBWLAN_REQUEST)
    install(FILES tools/wlanrequest/wlanrequest.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/libwlan)
install(EXPORT libwlan-targets NAMESPACE libwlan:: DESTINATION ${package_dir})
set(property_of_store INTERFACE_LINK_LIBRARIES)
if(BUILD_SHARED_LIBS)
    set(property_of_store IMPORTED_LINK_DEPENDENT_LIBRARIES)
endif()
configure_package_config_file(cmake/libwlan-config.cmake.in libwlan-config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(libwlan-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libwlan-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/libwlan-config-version.cmake
        DESTINATION ${package_dir})

file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/libwlan.pc.in libwlan.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libwlan.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(LIBWLAN_REQUEST)
    configure_file(cmake/libwlanrequest.pc.in libwlanrequest.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libwlanrequest.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
