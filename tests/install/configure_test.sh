#!/usr/bin/env bash
# A configure needs a compiler and inih, or a store of the firmware's. What else is missing only leaves parts out, and a
# line for each names the package and the switch; what was asked for by name is not left out.
# usage: configure_test.sh SOURCE_FOLDER INIH_INCLUDE_FOLDER INIH_LIBRARY
set -euo pipefail
source=$1 without_inih="-DCMAKE_IGNORE_PATH=$2;$(dirname "$3")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
without_packages=(-DCMAKE_DISABLE_FIND_PACKAGE_{CLI11,nlohmann_json,GTest}=ON
    -DMICROHTTPD_{INCLUDE_DIR,LIBRARY}=/installed-or-not)

no_tools="libcli11-dev is missing; install it or configure with -DLIBWLAN_TOOLS=OFF"
no_setup="nlohmann-json3-dev is missing; install it or configure with -DLIBWLAN_SETUP=OFF"
no_camera="libcli11-dev nlohmann-json3-dev are missing; install them or configure with -DLIBWLAN_SIM=OFF"
no_examples="nlohmann-json3-dev is missing; install it or configure with -DLIBWLAN_EXAMPLES=OFF"
no_tests="libgtest-dev libcli11-dev nlohmann-json3-dev are missing; install them or configure with -DBUILD_TESTING=OFF"
no_reasons="libwpa-client-dev is missing; install it or configure with -DLIBWLAN_WPA_CTRL=OFF"
no_store="libinih-dev is missing; install it or name the firmware's own store with -DLIBWLAN_STORE=LIBRARY"

# configure NAME done|refused OPTION...: what is said of missing packages is read from standard input.
configure() {
    local name=$1 wanted=$2 ended=done
    rm -f "$work/build/CMakeCache.txt" # the compilers need not be looked at again
    cmake -S "$source" -B "$work/build" "${@:3}" &>"$work/log" || ended=refused
    if [ "$ended" != "$wanted" ] || ! diff - <(sed -n 's/^ *\(-- Without\)\? \(.* missing; .*\)/\1 \2/p' "$work/log"); then
        cat "$work/log"
        echo "$name: the configure was $ended, and said of missing packages what stands above"
        exit 1
    fi
}

configure "nothing but inih" 'done' "${without_packages[@]}" <<END
-- Without wlanctl: $no_tools
-- Without wlansetup: $no_setup
-- Without the virtual camera: $no_camera
-- Without the examples: $no_examples
-- Without the tests: $no_tests
END
# A plain build has the flags that its caller gives: warnings never fail it, and no kind of build is chosen for him.
grep -q '"command": ".* -Wall ' "$work/build/compile_commands.json"
if grep -E '"command": ".* -(Werror|O|g)' "$work/build/compile_commands.json"; then
    exit 1
fi

configure "a store of the firmware's" 'done' "$without_inih" "${without_packages[@]}" -DLIBWLAN_STORE=firmware \
    -DLIBWLAN_TOOLS=OFF -DLIBWLAN_SETUP=OFF -DLIBWLAN_SIM=OFF -DLIBWLAN_EXAMPLES=OFF -DBUILD_TESTING=OFF </dev/null

# The folders that are passed over hold wpa_ctrl.h and its library, too.
configure "nothing" refused "$without_inih" "${without_packages[@]}" -DLIBWLAN_TOOLS=ON -DBUILD_TESTING=ON <<END
-- Without the daemons' own reasons in wlanctl: $no_reasons
-- Without wlansetup: $no_setup
-- Without the virtual camera: $no_camera
-- Without the examples: $no_examples
 wlanctl: $no_tools
 the tests: $no_tests
 the store: $no_store
END

# In another project nothing but the library is built, and that project's own settings stay as they are.
mkdir "$work/firmware"
cat >"$work/firmware/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.16)
project(firmware LANGUAGES C CXX)
include(CTest)
add_library(store SHARED store.cpp)
set(LIBWLAN_STORE store)
add_subdirectory("$source" libwlan)
add_executable(camera camera.cpp)
target_link_libraries(camera PRIVATE libwlan::wlan)
END
touch "$work/firmware/"{store,camera}.cpp
cmake -S "$work/firmware" -B "$work/build_firmware" -DBUILD_TESTING=ON >"$work/log"
diff - <(sed -n "s,.*\"file\": \"$source/\([a-z]*\)/.*,\1,p" "$work/build_firmware/compile_commands.json" | sort -u) <<<src
diff - <(grep -E '^(CMAKE_BUILD_TYPE|BUILD_[A-Z_]*|LIBWLAN_[A-Z]*):' "$work/build_firmware/CMakeCache.txt") <<END
BUILD_TESTING:BOOL=ON
CMAKE_BUILD_TYPE:STRING=
LIBWLAN_BENCH:BOOL=OFF
LIBWLAN_FUZZ:BOOL=OFF
END
