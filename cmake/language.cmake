# One target that carries how every part of this project is compiled.

add_library(libwlan_language INTERFACE)
add_library(libwlan::language ALIAS libwlan_language)
target_compile_features(libwlan_language INTERFACE cxx_std_17 c_std_11)
target_compile_options(libwlan_language INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion)

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
