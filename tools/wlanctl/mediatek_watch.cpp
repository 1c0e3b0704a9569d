// SPDX-License-Identifier: MIT
// Watching a MediaTek adapter join: its driver tells of a link only.

#include "mediatek_watch.h"

#include "air.h"
#include "link_watch.h"

namespace {

constexpr const char* stations[] = {"wlan0", "apclii0"};

} // namespace

sight mediatek_watch::look() {
    for (const char* interface : stations) {
        sight sight = look_at_link(interface, target_, address_, linked_);
        if (sight.now == sight::state::reached || linked_)
            return sight;
    }
    return {};
}

setback mediatek_watch::give_up() {
    if (linked_)
        return {reason::no_address, true, {}, answer::object()};
    bool heard = false;
    bool sure = true;
    try {
        heard = find_strongest(survey_air(true, true), target_.ssid) != nullptr;
    } catch (const failure&) { // then what was heard before has to do
        heard = target_.was_heard;
        sure = false;
    }
    if (!heard)
        return {reason::not_heard, sure};
    return {target_.is_protected ? reason::wrong_key : reason::refused, false};
}
