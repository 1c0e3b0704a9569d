// SPDX-License-Identifier: MIT
/// @file
/// The access point as a service: the radio from the stored settings, and a DHCP server behind it.

#pragma once

#include "libwlan/api.h"
#include "libwlan/store.h"

extern "C" {

/// Starts the stored access point and then a DHCP server on its interface ("ra0" on MediaTek,
/// "wlan1" on Realtek): stops an old udhcpd, writes /tmp/udhcpd.conf, gives the interface its
/// address with `ifconfig` and runs `udhcpd`, which the camera's image has detach by itself, read
/// that file and write /tmp/udhcpd.pid. Blocks for 10 seconds at most on MediaTek, 30 on Realtek.
///
/// The `ifconfig` command line is cut at 31 characters: on "wlan1" an address of 14 or 15
/// characters loses the end of the word "up" behind it. Part of the interface.
/// @return 0, whatever the programs answered; -1 when the access point or the store failed. The
///         DHCP server is then left alone.
LIBWLAN_API int run_ap_mode_base_db();

/// Stops the DHCP server, then the access point of the adapter that is plugged in. Blocks for 10
/// seconds at most on MediaTek, 20 on Realtek.
/// @return 0, whatever the programs answered.
LIBWLAN_API int run_stop_ap_mode();

/// Takes "ra0" down with `ifdown` and `ifconfig`.
/// @return 0, whatever the programs answered.
LIBWLAN_API int do_stop_ap_mode_mtk();

/// Stops hostapd through /tmp/hostapd.pid, 10 seconds at most, and takes "wlan1" down with `ifdown`
/// and `ifconfig`.
/// @return 0, whatever the programs answered.
LIBWLAN_API int do_stop_ap_mode_realtek();

/// Writes /tmp/udhcpd.conf anew.
/// @param interface name that the DHCP server is to serve; of any length.
/// @param setting its four addresses, of up to 32 characters each; written as they are.
/// @return 0; -1 after "Open /tmp/udhcpd.conf fail" on standard error, or for a null argument.
LIBWLAN_API int create_udhcpd_config(const char* interface, const _dhcp_server_setting* setting);
}
