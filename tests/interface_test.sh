#!/usr/bin/env bash
# What the library exports is its public interface, no more and no less.
# usage: interface_test.sh LIBRARY LIST
set -euo pipefail
diff -u "$2" <(nm -DC --defined-only "$1" | cut -d' ' -f3- | LC_ALL=C sort -u) ||
    { echo "The interface changed. If that is meant, put it into $2."; exit 1; }
