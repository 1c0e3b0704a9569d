#!/usr/bin/env bash
# What the README says is enough for a project outside this tree: its program builds with the installed
# library, through CMake and through make, shared and static, and runs on the virtual camera.
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

# Builds the outside project in both ways; its programs need the libwlan.so that is named, if any.
check() {
    local kind=$1 pkg_config=$2 needed=$3 usr=$work/$1/usr program output
    export PKG_CONFIG_PATH=$(dirname "$(find "$usr" -name libwlan.pc)")
    cmake -S "$work/outside" -B "$work/$kind/by_cmake" -DCMAKE_PREFIX_PATH="$usr" \
        -DCMAKE_CXX_FLAGS="${CXXFLAGS:-}" >/dev/null
    cmake --build "$work/$kind/by_cmake" >/dev/null
    make -s -B -C "$work/outside" CXX="${CXX:-c++}" CXXFLAGS="${CXXFLAGS:-}" PKG_CONFIG="$pkg_config"
    for program in "$work/$kind/by_cmake/camera" "$work/outside/camera"; do
        test "$(readelf -d "$program" | grep -o 'libwlan\.so\.1' || true)" = "$needed"
        output=$("$vcamera" --scene "${vcamera%/bin/*}/share/libwlan/scenes/mtk-office.json" \
            --scratch "$work/camera" --fresh --speed 0 -- "$program")
        grep -x '  6  Office' <<<"$output"
        grep -x 'access point is up on ra0' <<<"$output"
        "$vcamera" log --scratch "$work/camera" | grep -q 'SSID=Camera'
        export LD_LIBRARY_PATH=$(pkg-config --variable=libdir libwlan) # CMake's program knew it by itself
    done
    unset LD_LIBRARY_PATH
}

DESTDIR=$work/shared cmake --install "$build" --prefix /usr >/dev/null
cmake -S "$source" -B "$work/static_build" -DBUILD_SHARED_LIBS=OFF -DLIBWLAN_SIM=OFF -DLIBWLAN_TOOLS=OFF \
    -DLIBWLAN_TESTS=OFF -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="${CXXFLAGS:-}" >/dev/null
cmake --build "$work/static_build" >/dev/null
DESTDIR=$work/static cmake --install "$work/static_build" --prefix /usr >/dev/null

vcamera=$work/shared/usr/bin/vcamera
check static 'pkg-config --static' ''
check shared pkg-config libwlan.so.1

wlanctl=$work/shared/usr/sbin/wlanctl
test "$("$wlanctl" --version)" = "wlanctl $(pkg-config --modversion libwlan)"
. "$work/shared/usr/share/bash-completion/completions/wlanctl"
COMP_WORDS=("$wlanctl" ap start --key) COMP_CWORD=3
_wlanctl "$wlanctl" --key start
test "${COMPREPLY[*]}" = '--key-file --key'
