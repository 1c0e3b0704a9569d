# Sourced by the tests of wlansetup with the real wlanctl on the virtual camera. Their arguments:
#   WLANSETUP WLANCTL VCAMERA SCENES_FOLDER
# What a test is at stands in $case, for messages.
set -euo pipefail
wlansetup=$1 vcamera=$3 scenes=$4
export WLANCTL=$2
work=$(mktemp -d)
program=''
# Ended by its own number: it is what vcamera became.
trap '[ -z "$program" ] || kill "$program" 2>/dev/null || true; rm -rf "$work"' EXIT

fail() {
    echo "$case: $*" >&2
    cat "$work/errors" >&2
    exit 1
}

# start SCENE SPEED OPTION...: wlansetup on a new camera
start() {
    port=$((20000 + RANDOM % 10000))
    rm -f "$work/errors"
    "$vcamera" --fresh --scratch "$work/camera" --scene "$1" --speed "$2" -- \
        "$wlansetup" --address 127.0.0.1 --port "$port" "${@:3}" 2>"$work/errors" &
    program=$!
}

# ends it, with status 0
stop() {
    kill "$program"
    wait "$program" || fail "ended with $?"
    program=''
}

# ask METHOD PATH BODY
ask() {
    exec 3<>"/dev/tcp/127.0.0.1/$port" || return
    printf '%s %s HTTP/1.1\r\nHost: 127.0.0.1:%s\r\nConnection: close\r\nContent-Type: application/json\r\n' "$1" "$2" "$port" >&3
    printf 'Content-Length: %s\r\n\r\n%s' "${#3}" "$3" >&3
    cat <&3
    exec 3>&-
}

told() { "$vcamera" log --scratch "$work/camera"; }
