#!/usr/bin/env bash
# Each public header compiles without a warning, alone and with all others, as C++11 and later; and in any order with
# the network headers of the kernel and the C library.
# usage: headers_test.sh INCLUDE_FOLDER COMPILER...
set -euo pipefail
include=$1 compilers=("${@:2}") compiler=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export include compiler work

network_headers=(linux/if.h linux/wireless.h net/if.h net/ethernet.h linux/if_ether.h netinet/in.h sys/socket.h
    netinet/if_ether.h linux/socket.h ifaddrs.h)
ours=(libwlan/link_status.h libwlan/wlan.h) # the two that include network headers
for header in $(cd "$include" && grep -lE '#include <(net|netinet|linux|sys)/' libwlan/*.h); do
    [[ " ${ours[*]} " == *" $header "* ]] || { echo "$header includes network headers, too"; exit 1; }
done

# What those two need of the C++ library. Its own headers take nine tenths of the time, and include no network header.
mkdir "$work/std"
echo 'namespace std { class string; }' >"$work/std/string"
echo 'namespace std { template <class> class vector; }' >"$work/std/vector"
echo '#include <stdio.h>' >"$work/std/cstdio"
printf '#include <stddef.h>\nnamespace std { using ::size_t; }' >"$work/std/cstddef"
printf '#include <stdint.h>\nnamespace std { using ::int32_t; }' >"$work/std/cstdint"

includes() { printf '#include <%s>\n' "$@"; }

# clean STANDARD COMPILER HEADER...
clean() {
    includes "${@:3}" |
        "$2" "-std=$1" -Wall -Wextra -Wpedantic -Werror -I "$include" -fsyntax-only -x c++ -
}

# in_order HEADER...
in_order() {
    includes "$@" | "$compiler" -std=c++11 -nostdinc++ -I "$work/std" -I "$include" -fsyntax-only -x c++ -
}

# attempt COMMAND ARGUMENT...: says which way it went, and why it failed
attempt() {
    local reason
    if reason=$("$@" 2>&1); then echo "passed: $*"; else printf 'FAILED: %s\n%s\n' "$*" "$(grep -m 3 error <<<"$reason")"; fi
}
export -f includes clean in_order attempt

# Runs the commands on standard input, one a line, on all processors.
attempt_all() { xargs -P "$(nproc)" -L 1 bash -c 'attempt "$@"' bash; }

for header in "${network_headers[@]}"; do
    for other in "${network_headers[@]}"; do
        echo "in_order $header $other"
    done
done | attempt_all | sed -n 's/^passed: in_order //p' >"$work/peaceful"
for header in "${network_headers[@]}"; do # so that nothing but a conflict takes a pair out
    grep -qxF "$header $header" "$work/peaceful" || { echo "$header does not compile"; exit 1; }
done

{
    (
        cd "$include"
        printf "clean c++11 $compiler %s\n" libwlan/*.h
        printf "clean c++20 $compiler %s\n" libwlan/*.h
        for any in "${compilers[@]}"; do
            for standard in c++11 c++17 c++20; do
                echo "clean $standard $any" libwlan/*.h
            done
        done
    )
    while read -r one other; do
        echo "in_order $one ${ours[*]} $other"
    done <"$work/peaceful"
} | attempt_all >"$work/results"
grep -c '^passed' "$work/results"
! grep -v '^passed' "$work/results"
