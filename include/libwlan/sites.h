// SPDX-License-Identifier: MIT
/// @file
/// One surveyed access point, and the two orders of a survey list.

#pragma once

#include <cstddef>
#include <cstdint>

#include "libwlan/api.h"

/// One access point. Texts are padded with NULs; a text that fills its field has no terminator.
struct sites {
    char ssid[36];           ///< name of up to 35 bytes, and a NUL; on Realtek a blank follows one
                             ///< of 32 bytes: join it by its 32
    char bssid[20];          ///< address as the driver prints it, hexadecimal with colons
    char encryption[12];     ///< "TKIP/AES", "AES", "TKIP", "WEP", "NONE", or the driver's own word
    char authentication[20]; ///< "WPA-PSK/WPA2-PSK", "WPA2-PSK", "WPA-PSK", "WEPAUTO", "OPEN", or
                             ///< the driver's own word
    char network_type[12];   ///< "Infra", or the driver's own word
    std::int32_t channel;    ///< at least 1 on MediaTek; reckoned from the frequency on Realtek
    std::int32_t rssi;       ///< level: dBm from a version-1 table, 0 from a version-2 table, the
                             ///< driver's own 0 to 255 on Realtek
    std::int32_t signal;     ///< quality in percent; 0 from a version-1 table
};

static_assert(offsetof(sites, ssid) == 0, "binary interface");
static_assert(offsetof(sites, bssid) == 36, "binary interface");
static_assert(offsetof(sites, encryption) == 56, "binary interface");
static_assert(offsetof(sites, authentication) == 68, "binary interface");
static_assert(offsetof(sites, network_type) == 88, "binary interface");
static_assert(offsetof(sites, channel) == 100, "binary interface");
static_assert(offsetof(sites, rssi) == 104, "binary interface");
static_assert(offsetof(sites, signal) == 108, "binary interface");
static_assert(sizeof(sites) == 112, "binary interface");

extern "C" {

/// Orders by `signal`, strongest first. Nothing else counts: equal signals are equivalent.
/// @return whether `a` comes before `b`.
LIBWLAN_API bool compare_signal(sites a, sites b);

/// Orders by name, ignoring the case of ASCII letters.
/// @return whether `a` comes before `b`.
LIBWLAN_API bool compare_by_ssid(sites a, sites b);
}
