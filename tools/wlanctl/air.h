// SPDX-License-Identifier: MIT
// What is in the air.

#pragma once

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "answer.h"
#include "libwlan/sites.h"

/// Surveys the air, for ten seconds again and again while the driver is busy, and tells the
/// progress.
/// @param trigger false reads what the driver heard last (MediaTek).
/// @throws failure when the driver refused and nothing is listed.
std::vector<sites> survey_air(bool mediatek, bool trigger);

/// Carries a survey out in a child, for ten seconds again and again while the driver is busy.
/// @param survey fills in what it found, and returns -1 when the driver refused.
/// @return what it found.
/// @throws failure as survey_air().
std::string survey_bytes(const std::function<int(std::string&)>& survey, bool trigger);

/// The same for a list of plain records.
template <typename Record>
std::vector<Record> survey_list(const std::function<int(std::vector<Record>&)>& survey,
                                bool trigger) {
    const std::string bytes = survey_bytes(
        [&](std::string& found) {
            std::vector<Record> list;
            const int result = survey(list);
            found.assign(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(Record));
            return result;
        },
        trigger);
    std::vector<Record> list(bytes.size() / sizeof(Record));
    if (!list.empty())
        std::memcpy(list.data(), bytes.data(), list.size() * sizeof(Record));
    return list;
}

/// "2.4 GHz" or "5 GHz"; null for channel 0, which is none.
answer band_of(int channel);

/// Of a network with a name, at most its 32 bytes: the library adds a blank to one of 32.
std::string name_of(const sites& site);

/// @return its channel, 0 when the driver told none.
int channel_of(const sites& site, bool mediatek);

/// "WPA2-PSK AES", or "OPEN".
std::string security_of(const sites& site);

/// A site as a list of networks tells it.
answer describe(const sites& site, bool mediatek);

/// @return the strongest one with this name; null when none is listed.
const sites* find_strongest(const std::vector<sites>& list, const std::string& name);

/// In percent or, from some drivers, dBm: comparable within one list.
int strength(const sites& site);
