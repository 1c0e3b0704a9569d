#!/usr/bin/env bash
# What the README says is enough for a project outside this tree: its program builds with the installed library, through
# CMake and through make, shared and static, with this project's store and with one of the firmware's, and runs on the
# virtual camera.
# usage: install_test.sh BUILD_FOLDER SOURCE_FOLDER
set -Eeuo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'echo "failed in line $LINENO: $BASH_COMMAND" >&2' ERR

# The README's block in a language.
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/!p}" "$source/README.md"; }

mkdir "$work/outside"
block cpp >"$work/outside/camera.cpp"
block cmake >"$work/outside/CMakeLists.txt"
block make >"$work/outside/Makefile"

# A store of the firmware's: in a folder that no linker searches, without a SONAME.
firmware=$work/firmware
mkdir "$firmware"
cat >"$work/store.cpp" <<'CPP'
#include <libwlan/store.h>

int cam_get_ap(_wireless_setting*) { return -1; }
int cam_get_client(_wireless_setting*) { return -1; }
int cam_set_client(_wireless_setting*, _cam_actions*, unsigned char, unsigned char) { return -1; }
int cam_get_system(_system_setting*) { return -1; }
int cam_get_dhcp_server(_dhcp_server_setting*) { return -1; }
PIB::PIB() {}
PIB::~PIB() {}
int PIB::init() { return -1; }
int PIB::getRegion() { return 0; }
int PIB::getRegionABand() { return 0; }
CPP
# shellcheck disable=SC2086
"${CXX:-c++}" ${CXXFLAGS:-} -shared -fPIC -I"$source/include" "$work/store.cpp" -o "$firmware/libfirmware.so"

# Installs the library alone as NAME, built with the options.
install_library() {
    local name=$1
    cmake -S "$source" -B "$work/build" -DLIBWLAN_SIM=OFF -DLIBWLAN_TOOLS=OFF -DLIBWLAN_REQUEST=OFF -DLIBWLAN_SETUP=OFF \
        -DLIBWLAN_EXAMPLES=OFF \
        -DBUILD_TESTING=OFF -DCMAKE_CXX_FLAGS="${CXXFLAGS:-}" "${@:2}" >/dev/null
    cmake --build "$work/build" --parallel >/dev/null
    DESTDIR=$work/$name cmake --install "$work/build" --prefix /usr >/dev/null
}

pages() { (cd "$1/usr/share/man" && find . -type f | LC_ALL=C sort | xargs -n 1 basename | xargs); }

# Builds the outside project in both ways; its programs need the libwlan.so that is named, if any.
check() {
    local kind=$1 pkg_config=$2 needed=$3 usr=$work/$1/usr program output libdir
    export PKG_CONFIG_PATH=$(dirname "$(find "$usr" -name libwlan.pc)")
    libdir=$(pkg-config --variable=libdir libwlan)
    ! grep -rF -e "$work" -e "$build" -e "$source" "$libdir/pkgconfig" "$libdir/cmake"
    cmake -S "$work/outside" -B "$work/$kind/by_cmake" -DCMAKE_PREFIX_PATH="$usr" -DCMAKE_LIBRARY_PATH="$firmware" \
        -DCMAKE_CXX_FLAGS="${CXXFLAGS:-}" -DCMAKE_CXX_STANDARD=11 >/dev/null
    cmake --build "$work/$kind/by_cmake" >/dev/null
    make -s -B -C "$work/outside" CXX="${CXX:-c++}" CXXFLAGS="${CXXFLAGS:-} -std=c++11" \
        LDFLAGS="-L$firmware -Wl,-rpath-link,$firmware" PKG_CONFIG="$pkg_config"
    export LD_LIBRARY_PATH=$firmware
    for program in "$work/$kind/by_cmake/camera" "$work/outside/camera"; do
        test "$(readelf -d "$program" | grep -o 'libwlan\.so\.1' || true)" = "$needed"
        output=$("$vcamera" --scene "${vcamera%/bin/*}/share/libwlan/scenes/mtk-office.json" \
            --scratch "$work/camera" --fresh --speed 0 -- "$program")
        grep -x '  6  Office' <<<"$output"
        grep -x 'access point is up on ra0' <<<"$output"
        [[ $("$vcamera" log --scratch "$work/camera") == *SSID=Camera* ]]
        LD_LIBRARY_PATH+=:$libdir # CMake's program knew it by itself
    done
    unset LD_LIBRARY_PATH
}

DESTDIR=$work/shared cmake --install "$build" --prefix /usr >/dev/null
test "$(pages "$work/shared")" = 'vcamera.1 libwlan.3 wlanrequest.3 camera.conf.5 wlanctl.8 wlansetup.8'
vcamera=$work/shared/usr/bin/vcamera
check shared pkg-config libwlan.so.1

install_library static -DBUILD_SHARED_LIBS=OFF
test "$(pages "$work/static")" = 'libwlan.3 camera.conf.5'
check static 'pkg-config --static' ''

install_library static_with_firmware -DBUILD_SHARED_LIBS=OFF -DLIBWLAN_STORE="$firmware/libfirmware.so"
test "$(pages "$work/static_with_firmware")" = libwlan.3
check static_with_firmware 'pkg-config --static' ''

install_library shared_with_firmware -DBUILD_SHARED_LIBS=ON
check shared_with_firmware pkg-config libwlan.so.1
readelf -d "$work"/shared_with_firmware/usr/lib*/libwlan.so | grep -F '[libfirmware.so]' # not by its path here

# The client library, through pkg-config and CMake, in C.
export PKG_CONFIG_PATH=$(dirname "$(find "$work/shared" -name libwlanrequest.pc)")
mkdir "$work/client"
cat >"$work/client/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.16)
project(client C CXX)
find_package(libwlan REQUIRED)
add_executable(client event_loop.c)
target_link_libraries(client libwlan::wlanrequest)
CMAKE
cp "$source/examples/event_loop.c" "$work/client"
cmake -S "$work/client" -B "$work/client/build" -DCMAKE_PREFIX_PATH="$work/shared/usr" \
    -DCMAKE_LIBRARY_PATH="$firmware" -DCMAKE_C_FLAGS="${CXXFLAGS:-}" >/dev/null
cmake --build "$work/client/build" >/dev/null
# shellcheck disable=SC2046,SC2086
"${CC:-cc}" ${CXXFLAGS:-} "$work/client/event_loop.c" -o "$work/client/by_pkg_config" \
    $(pkg-config --cflags --libs libwlanrequest)
printf '#!/bin/sh\necho "{\\"event\\": \\"outcome\\", \\"ok\\": true}"\n' >"$work/client/wlanctl"
chmod +x "$work/client/wlanctl"
for program in "$work/client/build/client" "$work/client/by_pkg_config"; do
    [[ $(LD_LIBRARY_PATH=$(pkg-config --variable=libdir libwlanrequest) WLANCTL=$work/client/wlanctl \
        "$program" Office - </dev/null) == *outcome* ]]
done

wlanctl=$work/shared/usr/sbin/wlanctl
test "$("$wlanctl" --version)" = "wlanctl $(pkg-config --modversion libwlan)"
. "$work/shared/usr/share/bash-completion/completions/wlanctl"
COMP_WORDS=("$wlanctl" ap start --key) COMP_CWORD=3
_wlanctl "$wlanctl" --key start
test "${COMPREPLY[*]}" = '--key-file --key'
