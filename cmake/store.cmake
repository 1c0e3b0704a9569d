# The configuration store that the library is linked with: the one of this project, or the firmware's. What is
# installed names the firmware's by its name only; where it lies differs from machine to machine.

if(NOT LIBWLAN_STORE)
    add_subdirectory(store)
    set(LIBWLAN_STORE camstore)
    set(store_name camstore)
    set(store_of_firmware FALSE)
    return()
endif()

set(store_of_firmware TRUE)
get_filename_component(store_name ${LIBWLAN_STORE} NAME)
string(REGEX REPLACE "^(.*::|lib|-l)|\\.(so|a)[.0-9]*$" "" store_name ${store_name})
if(TARGET ${LIBWLAN_STORE})
    get_target_property(type ${LIBWLAN_STORE} TYPE)
    if(type STREQUAL SHARED_LIBRARY)
        # As a target it would have to be part of the CMake package.
        set(store_target ${LIBWLAN_STORE})
        set(LIBWLAN_STORE $<TARGET_LINKER_FILE:${store_target}>)
    endif()
elseif(LIBWLAN_STORE MATCHES "^/.*\\.so[.0-9]*$")
    # By its path, a library without a SONAME would be needed under that path on the camera.
    get_filename_component(folder ${LIBWLAN_STORE} DIRECTORY)
    get_filename_component(file ${LIBWLAN_STORE} NAME)
    link_directories(${folder})
    list(APPEND CMAKE_BUILD_RPATH ${folder})
    set(LIBWLAN_STORE -l:${file})
endif()
set(LIBWLAN_STORE $<BUILD_INTERFACE:${LIBWLAN_STORE}>)
