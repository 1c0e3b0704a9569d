#!/usr/bin/env bash
# Calls of the camera's fail while wlansetup comes up: it never ends. When one fails once, the page is reached in the
# end; when it fails for ever, wlansetup goes on trying at least.
# usage: faults_test.sh WLANSETUP WLANCTL VCAMERA SCENES_FOLDER
set -euo pipefail
wlansetup=$1 vcamera=$3 scenes=$4
export WLANCTL=$2
work=$(mktemp -d)
program=''
trap '[ -z "$program" ] || kill "$program" 2>/dev/null || true; rm -rf "$work"' EXIT

fail() {
    echo "$family, $call $nth, $times times: $*" >&2
    cat "$work/errors" >&2
    exit 1
}

status() {
    exec 3<>"/dev/tcp/127.0.0.1/$port" || return
    printf 'GET /api/status HTTP/1.1\r\nHost: 127.0.0.1:%s\r\nConnection: close\r\n\r\n' "$port" >&3
    cat <&3
    exec 3>&-
} 2>/dev/null

serves() { [[ $(status) == *'"state":"serving"'* ]]; }
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
    port=$((20000 + RANDOM % 10000))
    sed "1a \"faults\": [{\"call\": \"$call\", \"nth\": $nth, \"times\": $times, \"errno\": \"EIO\"}]," \
        "$scenes/$family-first-boot.json" >"$work/scene.json"
    rm -f "$work/errors"
    "$vcamera" --fresh --scratch "$work/camera" --scene "$work/scene.json" --speed 100 -- \
        "$wlansetup" --address 127.0.0.1 --port "$port" 2>"$work/errors" &
    program=$!
    until_it "$1"
    kill "$program"
    wait "$program" || fail "ended with $?"
    program=''
    swept=$((swept + 1))
    [[ $("$vcamera" log --scratch "$work/camera") != *EIO* ]] || failed=$((failed + 1))
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
