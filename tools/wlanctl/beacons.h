// SPDX-License-Identifier: MIT
// Every access point that the adapter hears: also hidden ones, those that share a name, and those
// that a camera cannot join. The library's survey leaves them out.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "answer.h"

constexpr std::int32_t not_told = -1000;

/// One of them, as a child hands it on.
struct beacon {
    char name[33] = ""; ///< empty when it is hidden
    char bssid[18] = "";
    char security[40] = ""; ///< "WPA2-PSK AES", or "OPEN"
    std::int32_t channel = 0;
    std::int32_t mhz = 0;
    std::int32_t dbm = not_told;
    std::int32_t percent = not_told;
};

/// Surveys the air as survey_air() does.
/// @throws failure as that.
std::vector<beacon> survey_beacons(bool mediatek, bool trigger);

/// Its strength from 0 to 100.
int strength(const beacon& beacon);

/// @return its signal with the unit.
std::string signal_text(const beacon& beacon);

/// One as a list tells it.
answer describe(const beacon& beacon);
