#!/usr/bin/env bash
# What the library exports is its public interface, no more and no less; what a program links with libwlan.a beyond
# that stands in namespace libwlan.
# usage: interface_test.sh LIBRARY LIST OBJECT...
set -euo pipefail
library=$1 list=$2
shift 2

same() {
    diff -u "$list" <(cut -d' ' -f3- | LC_ALL=C sort -u) && return
    echo "$1 has another interface. If that is meant, put it into $list."
    exit 1
}

nm -DC --defined-only "$library" | same "libwlan.so"
nm -g --defined-only "$@" | awk 'NF == 3' | # what the compiler and its library bring is everybody's
    grep -vE ' (_Z(n[wa]|N?[VKRO]*(7libwlan|S[ts]|9__gnu_cxx))[^ ]*|DW\.ref\.[^ ]*|__clang_call_terminate)$' | c++filt | same "libwlan.a"
