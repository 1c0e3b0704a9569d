#!/usr/bin/env bash
# The examples do what they say, on the virtual camera.
# usage: examples_test.sh EXAMPLES_FOLDER VCAMERA SCENES_FOLDER
set -euo pipefail
examples=$1 vcamera=$2 scenes=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

camera() {
    : >"$work/diagnostics"
    "$vcamera" --scratch "$work/camera" --speed 0 "$@" 2>>"$work/diagnostics"
}

fail() {
    echo "$family: $*" >&2
    cat "$work/diagnostics" >&2
    exit 1
}

told() { "$vcamera" log --scratch "$work/camera"; }
served() { grep -q ' system .*udhcpd' <<<"$(told)"; }

for family in mtk realtek; do
    joined=$(camera --fresh --scene "$scenes/$family-office.json" -- \
        "$examples/join_from_phone" <<<$'Office\ncorrect horse battery') || fail "not joined: $joined"
    camera -- "$examples/status_page" >"$work/page" || fail "no status page"
    [ "$(grep -c -e '"joined": true' -e '"channel": 6' -e '"cable": true' "$work/page")" = 3 ] ||
        fail "wrong status page: $(cat "$work/page")"
    ! served || fail "an access point beside the network that was joined"
    answer=$(camera -- "$examples/join_from_phone" <<<$'Office\nnot the key') && fail "joined with a wrong key"
    [[ $answer == *"Office was not joined"* ]] && served || fail "no access point to fall back to: $answer"
done

if [ -n "${WLANCTL:-}" ]; then
    for family in mtk realtek; do
        answer=$(camera --fresh --scene "$scenes/$family-office.json" -- \
            "$examples/event_loop" Office 'correct horse battery' 15 </dev/null) || fail "not joined: $answer"
        [ "$(grep -c '"outcome": "joined"' <<<"$answer")" = 15 ] || fail "not joined each time: $answer"
        [[ $answer == *"left after 15: 0 descriptors, 0 bytes, no child" ]] || fail "something is left: $answer"
    done
fi

family=mtk
camera --fresh --scene "$scenes/mtk-office.json" -- "$examples/wps_button" >/dev/null || fail "no WPS"
grep -q '^ssid = "Werkstatt' "$work/camera/etc/camera.conf" || fail "the network was not stored"
grep -q 'WscStop=1 .*-> ok' <<<"$(told)" || fail "the session goes on"
