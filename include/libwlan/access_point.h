#pragma once

/// @file
/// The access point as a service: the radio from the stored settings, and a DHCP server behind it.

#include "libwlan/api.h"
#include "libwlan/store.h"

extern "C" {

/// Starts the stored access point and then a DHCP server on its interface ("ra0" on MediaTek,
/// "wlan1" on Realtek): stops an old udhcpd (waiting up to ten seconds), writes /tmp/udhcpd.conf,
/// gives the interface its address with `ifconfig` and runs `udhcpd`. The camera's image has udhcpd
/// detach by itself, read /tmp/udhcpd.conf and write /tmp/udhcpd.pid.
/// @return 0, or -1 when the access point or the store failed; the DHCP server is then left alone.
LIBWLAN_API int run_ap_mode_base_db();

/// Stops the DHCP server (waiting up to ten seconds), then the access point of the adapter that is
/// plugged in.
/// @return 0.
LIBWLAN_API int run_stop_ap_mode();

/// Takes "ra0" down with `ifdown` and `ifconfig`.
/// @return 0, whatever the tools answered.
LIBWLAN_API int do_stop_ap_mode_mtk();

/// Stops hostapd (waiting up to ten seconds) and takes "wlan1" down with `ifdown` and `ifconfig`.
/// @return 0, whatever the tools answered.
LIBWLAN_API int do_stop_ap_mode_realtek();

/// Writes /tmp/udhcpd.conf for `interface`.
/// @return 0; -1 after "Open /tmp/udhcpd.conf fail" on standard error, or for a null argument.
LIBWLAN_API int create_udhcpd_config(const char* interface, const _dhcp_server_setting* setting);
}
