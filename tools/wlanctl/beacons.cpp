// SPDX-License-Identifier: MIT
// Every access point that the adapter hears.

#include "beacons.h"

#include <algorithm>

#include "air.h"
#include "field.h"
#include "mediatek_beacons.h"
#include "realtek_beacons.h"

std::vector<beacon> survey_beacons(bool mediatek, bool trigger) {
    return survey_list<beacon>(
        [&](std::vector<beacon>& list) {
            return mediatek ? hear_mediatek(list, trigger) : hear_realtek(list);
        },
        trigger);
}

int strength(const beacon& beacon) {
    constexpr int least_dbm = -100;
    const int share = beacon.percent != not_told ? beacon.percent : 2 * (beacon.dbm - least_dbm);
    return std::clamp(share, 0, 100);
}

std::string signal_text(const beacon& beacon) {
    return beacon.dbm != not_told       ? std::to_string(beacon.dbm) + " dBm"
           : beacon.percent != not_told ? std::to_string(beacon.percent) + " %"
                                        : "-";
}

answer describe(const beacon& beacon) {
    const auto told = [](int number, int none) {
        return number == none ? answer() : answer(number);
    };
    return {{"name", *beacon.name == '\0' ? answer() : answer(beacon.name)},
            {"bssid", address_text(beacon.bssid)},
            {"channel", told(beacon.channel, 0)},
            {"band", band_of(beacon.channel)},
            {"frequency_mhz", told(beacon.mhz, 0)},
            {"security", beacon.security},
            {"signal_dbm", told(beacon.dbm, not_told)},
            {"signal_percent", told(beacon.percent, not_told)}};
}
