// SPDX-License-Identifier: MIT
// The two daemons that drive a Realtek adapter. Each writes its pid file itself.

#pragma once

#include <cstring>

#define REALTEK_STATION "wlan0"
#define REALTEK_ACCESS_POINT "wlan1"

#define WPA_SUPPLICANT_CONFIG "/tmp/wpa_supplicant.conf"
#define WPA_SUPPLICANT_PID_FILE "/tmp/wpa_supplicant.pid"
#define HOSTAPD_CONFIG "/tmp/hostapd.conf"
#define HOSTAPD_PID_FILE "/tmp/hostapd.pid"

namespace libwlan::realtek {

/// Whether a text can stand in a daemon's configuration file: a line feed in a name or a key would
/// start a line of its own there.
inline bool fits_one_line(const char* text) {
    return text != nullptr && std::strchr(text, '\n') == nullptr;
}

} // namespace libwlan::realtek
