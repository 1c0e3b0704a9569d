#!/usr/bin/env bash
# A project outside this tree builds with the installed library, through CMake and through pkg-config, and
# runs on the virtual camera.
# usage: install_test.sh BUILD_FOLDER SOURCE_FOLDER EXAMPLE_SOURCE
set -euo pipefail
build=$1 source=$2 example=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/usr" >/dev/null
export PKG_CONFIG_PATH=$(dirname "$(find "$work/usr" -name libwlan.pc)")
libdir=$(pkg-config --variable=libdir libwlan)
export LD_LIBRARY_PATH=$libdir
test "$(readelf -d "$libdir/libwlan.so" | grep -o 'libwlan\.so\.1')" = libwlan.so.1

mkdir "$work/outside"
cp "$example" "$work/outside/camera.cpp"
cp "$source/tests/outside/CMakeLists.txt" "$work/outside"
cmake -S "$work/outside" -B "$work/outside/build" -DCMAKE_PREFIX_PATH="$work/usr" \
    -DCMAKE_CXX_FLAGS="${CXXFLAGS:-}" >/dev/null
cmake --build "$work/outside/build" >/dev/null
# shellcheck disable=SC2046
${CXX:-c++} ${CXXFLAGS:-} -std=c++17 "$work/outside/camera.cpp" -o "$work/by_pkg_config" \
    $(pkg-config --cflags --libs libwlan) -Wl,-rpath-link,"$libdir"

for program in "$work/outside/build/camera" "$work/by_pkg_config"; do
    "$work/usr/bin/vcamera" --scene "$work/usr/share/libwlan/scenes/mtk-office.json" --scratch "$work/camera" \
        --fresh --speed 0 -- "$program" | grep -x 'access point is up on ra0'
    "$work/usr/bin/vcamera" log --scratch "$work/camera" | grep -q 'SSID=Camera'
done
