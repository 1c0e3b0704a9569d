// SPDX-License-Identifier: MIT
// Every access point that the adapter hears.

#include "beacons.h"

#include <algorithm>
#include <cstring>

#include "air.h"
#include "mediatek_beacons.h"
#include "realtek_beacons.h"

std::vector<beacon> survey_beacons(bool mediatek, bool trigger) {
    const std::string bytes = survey_bytes(
        [&](std::string& found) {
            std::vector<beacon> list;
            const int result = mediatek ? hear_mediatek(list, trigger) : hear_realtek(list);
            found.assign(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(beacon));
            return result;
        },
        trigger);
    std::vector<beacon> list(bytes.size() / sizeof(beacon));
    if (!list.empty())
        std::memcpy(list.data(), bytes.data(), list.size() * sizeof(beacon));
    return list;
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
    constexpr int last_2ghz = 14;
    return {{"name", *beacon.name == '\0' ? answer() : answer(beacon.name)},
            {"bssid", beacon.bssid},
            {"channel", told(beacon.channel, 0)},
            {"band", beacon.channel == 0           ? answer()
                     : beacon.channel <= last_2ghz ? answer("2.4 GHz")
                                                   : answer("5 GHz")},
            {"frequency_mhz", told(beacon.mhz, 0)},
            {"security", beacon.security},
            {"signal_dbm", told(beacon.dbm, not_told)},
            {"signal_percent", told(beacon.percent, not_told)}};
}
