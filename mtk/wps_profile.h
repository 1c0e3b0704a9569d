#pragma once

// The network that a push-button session obtained, as the driver's text has it.

#include <optional>

/// Texts inside the profile.
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
