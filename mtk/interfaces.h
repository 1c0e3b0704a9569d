#pragma once

// Interfaces of a MediaTek/Ralink adapter. The names are arrays because operations take them as
// char*.

inline char access_point_interface[] = "ra0";
inline char station_2g_interface[] = "wlan0";
inline char station_5g_interface[] = "apclii0"; // the doubled "i" is the driver's own name

// What ifconfig is told.
inline char ifconfig_up[] = "up";
inline char ifconfig_down[] = "down";

// Put in front of keys that concern the AP-client.
inline char apcli_prefix[] = "ApCli";
inline char no_prefix[] = "";

/// The AP-client that takes part in push-button sessions, by the number that callers give.
/// @return its name; null for a number that is none.
inline char* wps_interface(int index) {
    return index == 0 ? station_2g_interface : nullptr;
}
