// SPDX-License-Identifier: MIT
/// @file
/// Questions about links and interfaces. Each call asks the kernel, the driver or a tool afresh and
/// keeps nothing; none waits, but for the tool of probe_link(). Interface names are NUL-terminated;
/// a null one is an interface that does not exist. Driver requests see the first 16 characters, and
/// no interface has a name longer than 15.

#pragma once

#include <cstdint>

#include <net/ethernet.h>
#include <sys/socket.h>

#include "libwlan/api.h"

/// Radio figures of a MediaTek adapter, as its driver gives them.
struct WIFI_INFO {
    std::int32_t oid_0108; ///< driver query 0x0108 on "wlan0", -99 when it failed
    std::int32_t oid_0109; ///< driver query 0x0109 on "wlan0", -99 when it failed
    std::int32_t oid_0678; ///< driver query 0x0678 on "wlan0", 0 when it failed
    std::int32_t oid_0679; ///< driver query 0x0679 on "wlan0", 0 when it failed
    std::int32_t oid_0630; ///< driver query 0x0630 on "wlan0", -99 when it failed
    std::int32_t noise;    ///< noise of "ra0" in dBm, -128 to 127
    std::int32_t level;    ///< level of "ra0" in dBm, -128 to 127
};

static_assert(sizeof(WIFI_INFO) == 28, "binary interface");

extern "C" {

/// Reads the operational state of an interface from /sys/class/net.
/// @return 0 when it is "down", else 1; an interface that does not exist, and a null name, count as
///         existing.
LIBWLAN_API int does_if_exist(const char* name);

/// Compares two hardware addresses of 6 bytes.
/// @return 0 when they are equal, else the sign of memcmp().
LIBWLAN_API int ether_cmp(const ether_addr* a, const ether_addr* b);

/// Tells the address of an access point from those that stand for "not associated": all zero,
/// broadcast and 44:44:44:44:44:44.
/// @param addr not null; the first 6 bytes of its `sa_data` count.
/// @return 1 for an access point, else 0.
LIBWLAN_API int does_have_vaild_mac(const sockaddr* addr);

/// Asks whether a station interface is associated. Failures are told on standard error.
/// @return 1 when it is, else 0.
LIBWLAN_API int does_wifi_associated(const char* name);

/// Asks for the channel of an associated station. What was found is told on standard error.
/// @return the number that the driver has in place of a frequency; -1 without an association or on
///         failure. A driver that refuses the channel leaves one socket open.
LIBWLAN_API int get_wifi_channel(const char* name);

/// Asks for an interface's channel, associated or not; prints it to standard output, and to the
/// console with a debug level other than 0. Leaves one socket open at every call, and with level 0
/// one stream of the console.
/// @return as get_wifi_channel().
LIBWLAN_API int get_current_wifi_channel(const char* name);

/// Asks whether an interface is administratively up, with a carrier or without.
/// @return 1 when it is up, 0 when down, -1 after a message on standard output when the kernel does
///         not know it.
LIBWLAN_API int does_ifup(const char* name);

/// Asks the board's Ethernet switch through the `mii_mgr` tool, which runs twice and prints once.
/// @return 1 when the wired link is up, else 0, also without the tool.
LIBWLAN_API int probe_link();

/// Collects the radio figures of a MediaTek adapter.
/// @param info receives them. With -1 it is untouched; with -22 `noise` and `level` are.
/// @return 0, -1 without a socket, -22 when "ra0" gives no statistics; that last case leaves one
///         socket open.
LIBWLAN_API int get_wifi_info(WIFI_INFO& info);
}
