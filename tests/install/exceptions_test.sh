#!/usr/bin/env bash
# Exceptions of a firmware's store, and of a list that cannot grow, pass through the library to the program. Every
# object on their way is built with exceptions, and no other is: the tables take 5 KiB on the camera.
# usage: exceptions_test.sh OBJECT...
set -euo pipefail

# What throws: the store, the memory behind a vector or a string, and their checks of lengths.
thrower='^(cam_[a-z_]+|_ZN3PIB.*|_Zn[wa][jm]|_ZSt[0-9]+__throw_.*)$'

declare -A imports passes
for object in "$@"; do
    imports[$object]=$(nm --undefined-only --format=posix "$object" | cut -d' ' -f1)
done

# An object lets exceptions pass when it imports what throws, or what another such object defines.
pattern=$thrower
for ((found = 1; found;)); do
    found=0
    for object in "$@"; do
        [ -z "${passes[$object]:-}" ] && grep -qE "$pattern" <<<"${imports[$object]}" || continue
        passes[$object]=yes found=1
        while read -r symbol _; do
            [[ $symbol == _ZNSt* || $symbol == _ZNKSt* ]] || pattern+="|^${symbol//./\\.}\$"
        done < <(nm --defined-only --extern-only --format=posix "$object")
    done
done

status=0
for object in "$@"; do
    built=$([[ ! $(readelf --sections --wide "$object") =~ \.(eh_frame|ARM\.exidx) ]] || echo yes)
    [ "$built" = "${passes[$object]:-}" ] && continue
    echo "${object##*wlan.dir/}: built $([ "$built" ] && echo with || echo without) exceptions, which $([ "${passes[$object]:-}" ] && echo can || echo cannot) pass"
    status=1
done
echo "${#passes[@]} of $# objects let exceptions pass"
[ ${#passes[@]} -gt 0 ] || status=1 # the lists above would name nothing any more
exit $status
