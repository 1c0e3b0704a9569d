// SPDX-License-Identifier: MIT
// How hostapd and wpa_supplicant write addresses, names and security.

#pragma once

#include <cstdint>
#include <string>

#include "vcamera/model/air.h"

/// As "02:00:00:00:00:01".
std::string address_text(const std::uint8_t (&address)[6]);

/// With escapes for what is not printable ASCII, for quotes and for backslashes.
std::string printable(const std::string& bytes);

std::string ssid_bytes(const access_point& point);
std::string ssid_text(const access_point& point);

/// The best cipher that the access point offers, or sends to all.
std::string pairwise_name(const access_point& point);
std::string group_name(const access_point& point);

/// As "[WPA2-PSK-CCMP][ESS]".
std::string security_flags(const access_point& point);

/// As "WPA2-PSK".
std::string key_management_name(const access_point& point);
