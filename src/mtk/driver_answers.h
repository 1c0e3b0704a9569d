// SPDX-License-Identifier: MIT
// Texts with which the driver answers, but for its survey table. Pure reading.

#pragma once

#include <optional>

namespace libwlan::mtk {

/// Reads the answer about one baseband register.
/// @return the register's value; none for a text that is no such answer.
std::optional<unsigned int> read_bbp_answer(const char* text);

/// The network that a push-button session obtained. The texts stand inside the driver's.
struct wps_profile {
    const char* ssid;
    const char* auth;
    const char* enc;
    const char* number; // of the key
    const char* key;    // null for a network without one
};

/// Reads the five lines from "SSID" on, ending each of them in place.
/// @param text NUL-terminated.
/// @return what they hold; none when one is missing, has no "=" or ends right after it.
std::optional<wps_profile> read_wps_profile(char* text);

} // namespace libwlan::mtk
