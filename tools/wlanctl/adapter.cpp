// SPDX-License-Identifier: MIT
// Which adapter is plugged in, and its interfaces.

#include "adapter.h"

#include <algorithm>

#include "libwlan/link_status.h"
#include "libwlan/modes.h"

#include "reasons.h"

namespace {

const char* state_of(const char* name) {
    const int up = does_ifup(name);
    return up < 0 ? "absent" : up > 0 ? "up" : "down";
}

} // namespace

void refresh(adapter& found) {
    for (wifi_interface& interface : found.interfaces)
        interface.state = state_of(interface.name);
}

bool is_usable(const adapter& found) {
    return std::any_of(found.interfaces.begin(), found.interfaces.end(),
                       [](const wifi_interface& interface) { return interface.state != "absent"; });
}

adapter find_adapter() {
    adapter found =
        isMtkWifi() == 1
            ? adapter{true,
                      {{"ra0", "access point", false, {}},
                       {"wlan0", "station 2.4 GHz", true, {}},
                       {"apclii0", "station 5 GHz", true, {}}}}
            : adapter{false,
                      {{"wlan0", "station", true, {}}, {"wlan1", "access point", false, {}}}};
    refresh(found);
    if (is_usable(found))
        return found;
    throw because({reason::no_adapter, true,
                   found.mediatek ? "it is plugged in, but its driver has made no interface"
                                  : "no USB vendor 148f, and neither wlan0 nor wlan1"},
                  found.mediatek ? "MediaTek adapter" : "no Wi-Fi adapter");
}
