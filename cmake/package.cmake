# What `cpack` makes: a Debian package with everything for the machine that develops, a tarball of what runs
# on it for the camera.

set(CPACK_PACKAGE_VENDOR "The libwlan authors")
set(CPACK_PACKAGE_CONTACT "The libwlan authors <libwlan@example.org>")
set(CPACK_PACKAGE_DESCRIPTION
"Camera programs link libwlan to put the radio into station, access-point or
repeater mode, to survey the air and to ask how the links are. With it come
wlanctl, the same for people, and the virtual camera that answers like a real one.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

if(CMAKE_CROSSCOMPILING)
    set(CPACK_GENERATOR TGZ)
    set(CPACK_SYSTEM_NAME ${CMAKE_SYSTEM_PROCESSOR})
    set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF) # to be unpacked over a root file system
    set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};${PROJECT_NAME};camera;/")
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/store
        ${PROJECT_BINARY_DIR}/tools/wlanrequest)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libc6-dev, pkg-config")
endif()
include(CPack)
