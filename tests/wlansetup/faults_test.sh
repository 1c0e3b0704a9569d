#!/usr/bin/env bash
# Calls of the camera's fail while wlansetup comes up: it never ends. When one fails once, the page is reached in the
# end; when it fails for ever, wlansetup goes on trying at least.
# usage: faults_test.sh WLANSETUP WLANCTL VCAMERA SCENES_FOLDER
. "${BASH_SOURCE%/*}/on_camera.sh"

serves() { [[ $(ask GET /api/status '' 2>/dev/null) == *'"state":"serving"'* ]]; }
tries_again() { grep -qsE '^wlansetup: (waiting|serving)' "$work/errors"; }

# until_it COMMAND: for a minute
until_it() {
    for _ in {1..1200}; do
        kill -0 "$program" 2>/dev/null || fail "ended by itself"
        ! "$1" || return 0
        sleep 0.05
    done
    fail "it never $1"
}

# come_up WANTED: with the fault that call, nth and times tell
come_up() {
    case="$family, $call $nth, $times times"
    sed "1a \"faults\": [{\"call\": \"$call\", \"nth\": $nth, \"times\": $times, \"errno\": \"EIO\"}]," \
        "$scenes/$family-first-boot.json" >"$work/scene.json"
    start "$work/scene.json" 100
    until_it "$1"
    stop
    swept=$((swept + 1))
    [[ $(told) != *EIO* ]] || failed=$((failed + 1))
}

failed=0 swept=0
for family in mtk realtek; do
    for call in ioctl socket open system popen; do
        times=1
        for nth in 1 2 5; do
            come_up serves
        done
        times=0 nth=1
        come_up tries_again
    done
done
[ "$failed" -gt $((swept / 2)) ] || fail "only $failed of $swept faults happened"
