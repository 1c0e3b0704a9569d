#pragma once

// Interfaces of a MediaTek/Ralink adapter. The names are arrays because operations take them as
// char*.

inline char access_point_interface[] = "ra0";
inline char station_2g_interface[] = "wlan0";
inline char station_5g_interface[] = "apclii0"; // the doubled "i" is the driver's own name

// Put in front of keys that concern the AP-client.
inline char apcli_prefix[] = "ApCli";
inline char no_prefix[] = "";
