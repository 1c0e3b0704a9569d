// SPDX-License-Identifier: MIT
// wpa_supplicant's configuration file, judged as wpa_supplicant 2.10 judges it: the keys that
// Debian's build knows, the values that they take, and what it says about others.

#pragma once

#include <map>

#include "vcamera/model/setting_values.h"

struct supplicant_settings {
    file_report report;
    std::map<std::string, std::string> values;
    std::vector<std::map<std::string, std::string>> networks; // those without an error
};

supplicant_settings read_supplicant_settings(const std::string& text);

/// @return whether wpa_supplicant knows the key, in a network block or outside, but its value is
/// not judged here.
bool is_unjudged_supplicant_key(const std::string& key, bool in_network);
