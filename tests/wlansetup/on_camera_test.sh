#!/usr/bin/env bash
# wlansetup with the real wlanctl on the virtual camera, both families: a wrong key, then the right one.
# usage: on_camera_test.sh WLANSETUP WLANCTL VCAMERA SCENES_FOLDER
. "${BASH_SOURCE%/*}/on_camera.sh"

# await TEXT: until the status holds it
await() {
    for _ in {1..600}; do
        status=$(ask GET /api/status '' 2>/dev/null) || status=''
        [[ $status != *"$1"* ]] || return 0
        sleep 0.05
    done
    fail "never \"$1\", but: $status"
}

for family in mtk realtek; do
    case=$family
    start "$scenes/$family-first-boot.json" 20 --retry 0 --shown 1
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
    stop
done
