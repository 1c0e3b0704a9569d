// SPDX-License-Identifier: MIT
// The Realtek radio as its driver shows it.

#include "vcamera/model/realtek_radio.h"

namespace {

// Microseconds, measured on wpa_supplicant 2.10 with a simulated radio of both bands: a scan, and
// the time from its beginning to the next one's while nothing is found.
constexpr std::int64_t scan_time = 3750000;
constexpr std::int64_t scan_period = scan_time + 5000000;

} // namespace

void realtek_radio_bring(realtek_radio& radio, int vif, bool up) {
    radio.vifs[vif].up = up;
    if (!up && vif == REALTEK_STATION) {
        radio.vifs[vif].joined = 0;
        radio.found = 0;
    }
}

int realtek_radio_channel(const realtek_radio& radio, const air& air, int vif) {
    const auto& asked = radio.vifs[vif];
    if (asked.joined != 0)
        return air_channel(air.points[asked.joined - 1].mhz);
    return asked.channel != 0 ? asked.channel : 1;
}

void realtek_radio_search(realtek_radio& radio, int found, std::int64_t now) {
    radio.searches = 1;
    radio.found = found;
    radio.searches_from = now;
}

void realtek_radio_stop_search(realtek_radio& radio) {
    radio.searches = 0;
    radio.vifs[REALTEK_STATION].joined = 0;
}

void realtek_radio_advance(realtek_radio& radio, std::int64_t now) {
    if (radio.searches != 0 && radio.found != 0 && now >= radio.searches_from + scan_time) {
        radio.vifs[REALTEK_STATION].joined = radio.found;
        radio.searches = 0;
    }
}

bool realtek_radio_scans(const realtek_radio& radio, std::int64_t now) {
    return radio.searches != 0 && (now - radio.searches_from) % scan_period < scan_time;
}
