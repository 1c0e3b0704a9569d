// SPDX-License-Identifier: MIT
// The Realtek radio as its driver shows it.

#include "vcamera/model/realtek_radio.h"

void realtek_radio_bring(realtek_radio& radio, int vif, bool up) {
    radio.vifs[vif].up = up;
    if (!up && vif == REALTEK_STATION)
        radio.vifs[vif].joined = 0;
}

int realtek_radio_channel(const realtek_radio& radio, const air& air, int vif) {
    const auto& asked = radio.vifs[vif];
    if (asked.joined != 0)
        return air_channel(air.points[asked.joined - 1].mhz);
    return asked.channel != 0 ? asked.channel : 1;
}
