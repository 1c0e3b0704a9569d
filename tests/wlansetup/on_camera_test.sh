#!/usr/bin/env bash
# wlansetup with the real wlanctl on the virtual camera, both families: a wrong key, then the right one.
# usage: on_camera_test.sh WLANSETUP WLANCTL VCAMERA SCENES_FOLDER
set -euo pipefail
wlansetup=$1 vcamera=$3 scenes=$4
export WLANCTL=$2
work=$(mktemp -d)
program=''
# Ended by its own number: it is what vcamera became.
trap '[ -z "$program" ] || kill "$program" 2>/dev/null || true; rm -rf "$work"' EXIT

fail() {
    echo "$family: $*" >&2
    cat "$work/errors" >&2
    exit 1
}

# ask METHOD PATH [BODY]
ask() {
    exec 3<>"/dev/tcp/127.0.0.1/$port" || return
    printf '%s %s HTTP/1.1\r\nHost: 127.0.0.1:%s\r\nConnection: close\r\nContent-Type: application/json\r\n' "$1" "$2" "$port" >&3
    printf 'Content-Length: %s\r\n\r\n%s' "${#3}" "$3" >&3
    cat <&3
    exec 3>&-
}

# await TEXT: until the status holds it
await() {
    for _ in {1..600}; do
        status=$(ask GET /api/status '' 2>/dev/null) || status=''
        [[ $status != *"$1"* ]] || return 0
        sleep 0.05
    done
    fail "never \"$1\", but: $status"
}

told() { "$vcamera" log --scratch "$work/camera"; }

for family in mtk realtek; do
    port=$((20000 + RANDOM % 10000))
    "$vcamera" --fresh --scratch "$work/camera" --scene "$scenes/$family-first-boot.json" --speed 20 -- \
        "$wlansetup" --address 127.0.0.1 --port "$port" --retry 0 --shown 1 2>"$work/errors" &
    program=$!
    await '"state":"serving"'
    [[ $status == *'"name":"Office"'* && $status == *'"ssid":"Camera"'* ]] || fail "no list: $status"
    [ "$family" != realtek ] || daemon=$(cat "$work/camera/tmp/hostapd.pid")
    [[ $(ask POST /api/join '{"name": "Office", "key": "not the key"}') == *'202 Accepted'* ]] || fail "not taken"
    await '"reason":"wrong_key"'
    await '"state":"serving"'
    if [ "$family" = realtek ]; then
        [ "$(cat "$work/camera/tmp/hostapd.pid")" = "$daemon" ] || fail "the access point was started afresh"
    else
        ! grep -q 'ifconfig ra0 .*down' <<<"$(told)" || fail "the access point went down"
    fi
    ! grep -q '^ssid = .*Office' "$work/camera/etc/camera.conf" || fail "stored before it was joined"
    [[ $(ask POST /api/join '{"name": "Office", "key": "correct horse battery"}') == *'202 Accepted'* ]] || fail "not taken"
    await '"address":"192.168.7.20"'
    for _ in {1..600}; do
        ! grep -q connected "$work/errors" || break
        sleep 0.05
    done
    grep -q '^ssid = .*Office' "$work/camera/etc/camera.conf" || fail "not stored"
    [ "$family" = mtk ] || [ ! -e "$work/camera/tmp/hostapd.pid" ] || fail "the access point is still there"
    grep -qE 'ifconfig (ra0|wlan1) 0.0.0.0 down' <<<"$(told)" || fail "the access point's interface is still up"
    ! grep -q 'correct horse' "$work/errors" || fail "a key in the log"
    kill "$program"
    wait "$program" || fail "ended by itself"
    program=''
done
