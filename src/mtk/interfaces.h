// SPDX-License-Identifier: MIT
// Interfaces of a MediaTek/Ralink adapter, and what they are told alike in several places.

#pragma once

#define MTK_ACCESS_POINT "ra0"

namespace libwlan::mtk {

// Arrays, because operations take these texts as char*.
inline char access_point_interface[] = MTK_ACCESS_POINT;
inline char station_2g_interface[] = "wlan0";
inline char station_5g_interface[] = "apclii0"; // the doubled "i" is the driver's own name

inline char ifconfig_up[] = "up";
inline char ifconfig_down[] = "down";

// Put in front of keys that concern the AP-client.
inline char apcli_prefix[] = "ApCli";
inline char no_prefix[] = "";

/// The driver's method of automatic channel selection for an access point without a fixed channel.
constexpr int access_point_channel_algorithm = 2;

/// The AP-client that takes part in push-button sessions, by the number that callers give.
/// @return its name; null for a number that is none.
inline char* wps_interface(int index) {
    return index == 0 ? station_2g_interface : nullptr;
}

} // namespace libwlan::mtk
