// SPDX-License-Identifier: MIT
// What iw and iwlist print of a scan, to compare with.

#pragma once

#include <string>
#include <vector>

/// An access point as a system tool lists it.
struct listed_point {
    std::string bssid; ///< upper case
    std::string name;  ///< empty when hidden
    int channel = 0;
    std::string security = "OPEN"; ///< as a survey tells it
};

/// Reads what `iw dev IFACE scan` or `iwlist IFACE scan` prints.
std::vector<listed_point> read_listing(const std::string& listing);
