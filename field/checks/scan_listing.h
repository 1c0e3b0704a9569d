#pragma once

#include <string>
#include <vector>

/// An access point as a system tool lists it.
struct listed_point {
    std::string bssid; ///< upper case
    std::string name;  ///< empty when hidden
    int channel = 0;
    bool wpa = false;
    bool rsn = false;
};

/// Reads what `iw dev IFACE scan` prints.
std::vector<listed_point> read_iw(const std::string& listing);

/// Reads what `iwlist IFACE scan` prints.
std::vector<listed_point> read_iwlist(const std::string& listing);
