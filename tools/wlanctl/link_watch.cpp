// SPDX-License-Identifier: MIT
// Looking at a station's link, on either family.

#include "link_watch.h"

#include <algorithm>
#include <cctype>

#include "link.h"
#include "progress.h"

namespace {

answer or_nothing(const std::string& text) {
    return text.empty() ? answer() : answer(text);
}

answer told(const char* interface, const target& target, const link_state& link) {
    answer found = {{"ssid", link.ssid.empty() ? target.ssid : link.ssid},
                    {"bssid", or_nothing(link.bssid)},
                    {"channel", link.channel > 0 ? answer(link.channel) : answer()}};
    if (link.signal_percent.is_null()) {
        found.set("signal_dbm", link.signal_dbm);
    } else {
        found.set("signal_percent", link.signal_percent);
    }
    found.set("interface", interface);
    found.set("address", or_nothing(link.address));
    return found;
}

} // namespace

sight look_at_link(const char* interface, const target& target, bool address, bool& linked) {
    const link_state link = ask_association(interface);
    // What lingers of a network from before is none of this one.
    const bool is_it = link.associated && (link.ssid.empty() || link.ssid == target.ssid);
    if (is_it && !linked) {
        const bool waits = address && link.address.empty();
        tell_progress(waits ? "address" : "associated", {{"bssid", link.bssid}});
    }
    const bool was = linked;
    linked = is_it;
    // A link that is broken off at once, as after a wrong key, is not seen twice.
    if (!is_it || !was || (address && link.address.empty()))
        return {};
    const link_state whole = ask_link(interface);
    if (!whole.associated)
        return {};
    return {sight::state::reached, {reason::timed_out}, told(interface, target, whole)};
}
