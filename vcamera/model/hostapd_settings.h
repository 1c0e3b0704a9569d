// SPDX-License-Identifier: MIT
// hostapd's configuration file, judged as hostapd 2.10 judges it: the keys that Debian's build
// knows, the values that they take, and what it says about others.

#pragma once

#include <cstdint>
#include <map>

#include "vcamera/model/setting_values.h"

enum class hostapd_build : std::uint8_t {
    adapter, // of the Realtek vendor's package: its driver, and 40 MHz on every channel
    stock,   // Debian's
    wrapped, // Debian's, behind a script that puts its driver in the place of the adapter's
};

struct hostapd_settings {
    file_report report;
    std::map<std::string, std::string> values; // those that were taken, the later of two
};

hostapd_settings read_hostapd_settings(const std::string& text, hostapd_build build);

/// What hostapd says when it cannot serve on the channel that the settings ask of a 2.4 GHz radio;
/// nothing when it can. Measured on a radio in the world's regulatory domain.
std::vector<std::string> channel_refusal(const hostapd_settings& settings, hostapd_build build);

/// @return the keys whose values are judged each in its own way, with blanks between them.
std::string judged_hostapd_keys();

/// @return whether hostapd knows the key but its value is not judged here.
bool is_unjudged_hostapd_key(const std::string& key);
