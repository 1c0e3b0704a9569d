// SPDX-License-Identifier: MIT
// Which adapter is plugged in, and its interfaces.

#include "adapter.h"

#include <algorithm>

#include "libwlan/link_status.h"
#include "libwlan/modes.h"

#include "answer.h"

namespace {

const char* state_of(const char* name) {
    const int up = does_ifup(name);
    return up < 0 ? "absent" : up > 0 ? "up" : "down";
}

} // namespace

adapter find_adapter() {
    adapter found =
        isMtkWifi() == 1
            ? adapter{true,
                      {{"ra0", "access point", false, {}},
                       {"wlan0", "station 2.4 GHz", true, {}},
                       {"apclii0", "station 5 GHz", true, {}}}}
            : adapter{false,
                      {{"wlan0", "station", true, {}}, {"wlan1", "access point", false, {}}}};
    bool usable = false;
    for (wifi_interface& interface : found.interfaces) {
        interface.state = state_of(interface.name);
        usable = usable || interface.state != "absent";
    }
    if (usable)
        return found;
    if (found.mediatek) {
        throw failure("the MediaTek adapter is plugged in, but has none of its interfaces",
                      "load its driver, then look again with: wlanctl adapter");
    }
    throw failure("no Wi-Fi adapter: no USB vendor 148f, and neither wlan0 nor wlan1",
                  "plug the adapter in and load its driver, then look again with: wlanctl adapter");
}
