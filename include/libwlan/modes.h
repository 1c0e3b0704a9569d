// SPDX-License-Identifier: MIT
/// @file
/// Station, access point and repeater on whichever adapter is plugged in.
///
/// Every call looks for the adapter family afresh and runs one request on a fresh driver object. It
/// returns 0, or -1 after the failing step's message on standard error; earlier steps are not
/// undone. Lengths, blocking times and what stays open: libwlan.h.
///
/// | argument      | MediaTek                             | Realtek                              |
/// |---------------|--------------------------------------|--------------------------------------|
/// | `ssid`        | see @ref texts                       | see @ref texts                       |
/// | `bssid`       | not null; all zero stands for any    | not used                             |
/// | `auth`, `enc` | see settings.h                       | see settings.h                       |
/// | `key`         | passphrase or WEP key; null only     | passphrase, or a station's raw key;  |
/// |               | with ENC_NONE                        | null only for an open network        |
/// | `channel`     | 0 both bands, 1 to 14, 15 and above  | not used                             |
/// | `key_index`   | number of the WEP key, 1 to 4        | not used                             |
///
/// On Realtek every mode first stops wpa_supplicant, so that starting an access point ends the
/// station. Then the daemon's file is written and the daemon started, also when its file could not
/// be written: it runs with the file of before.

#pragma once

#include "libwlan/api.h"
#include "libwlan/settings.h"

extern "C" {

/// Looks for a MediaTek/Ralink USB adapter (vendor 148f) in /proc/bus/usb/devices or, without that
/// file, in what `lsusb` prints.
/// @return 1 when there is one, else 0, also when neither can be read: Realtek is then assumed.
LIBWLAN_API int isMtkWifi();

/// @name Settings from the caller
/// @{

/// Sets up the access point: "ra0", or "wlan1" under hostapd by way of /tmp/hostapd.conf. On
/// MediaTek its channel stays the one that the radio is on.
LIBWLAN_API int run_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

/// Joins a network: "wlan0" or "apclii0", or "wlan0" under wpa_supplicant by way of
/// /tmp/wpa_supplicant.conf. On MediaTek with channel 0, a failure on the second band prints its
/// message and still returns 0.
LIBWLAN_API int run_infra_mode(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc,
                               char* key, int channel, unsigned char key_index);

/// Access point, then station; without the access point the station is not started. On MediaTek
/// the driver chooses the access point's channel, and the station uses WEP key number 1.
LIBWLAN_API int run_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc,
                                  char* ap_key, char* client_ssid, char* client_bssid,
                                  auth_from_cam client_auth, enc_from_cam client_enc,
                                  char* client_key, int channel);

/// @}
/// @name Settings from the store
/// Read through store.h before the radio is touched. MediaTek stations also take from it whether to
/// join by name alone. run_ap_mode_base_db() stands in access_point.h.
/// @{

/// Joins the network of the client settings (cam_get_client()).
LIBWLAN_API int run_infra_mode_base_db();

/// Access point and station from one record (cam_get_ap()).
LIBWLAN_API int run_repeater_mode_base_db();

/// @}
/// @name The same on a given family
/// The adapter is not looked for. Arguments and results as above.
/// @{

/// Access point on a MediaTek adapter.
LIBWLAN_API int do_ap_mode_mtk(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

/// Station on a MediaTek adapter, joining the given BSSID on the given channel.
LIBWLAN_API int do_infra_mode_mtk(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc,
                                  char* key, int channel, unsigned char key_index);

/// Access point and station on a MediaTek adapter, joining the given BSSID on the given channel.
LIBWLAN_API int do_repeater_mode_mtk(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc,
                                     char* ap_key, char* client_ssid, char* client_bssid,
                                     auth_from_cam client_auth, enc_from_cam client_enc,
                                     char* client_key, int channel);

/// Stored access point on a MediaTek adapter; the driver then chooses its channel.
LIBWLAN_API int do_ap_mode_base_db_mtk();

/// Stored station on a MediaTek adapter.
LIBWLAN_API int do_infra_mode_base_db_mtk();

/// Stored access point and station on a MediaTek adapter.
LIBWLAN_API int do_repeater_mode_base_db_mtk();

/// Access point on a Realtek adapter.
LIBWLAN_API int do_ap_mode_realtek(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

/// Station on a Realtek adapter.
LIBWLAN_API int do_infra_mode_realtek(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

/// Access point and station on a Realtek adapter.
LIBWLAN_API int do_repeater_mode_realtek(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc,
                                         char* ap_key, char* client_ssid, auth_from_cam client_auth,
                                         enc_from_cam client_enc, char* client_key);

/// Stored access point on a Realtek adapter.
LIBWLAN_API int do_ap_mode_base_db_realtek();

/// Stored station on a Realtek adapter.
LIBWLAN_API int do_infra_mode_base_db_realtek();

/// Stored access point and station on a Realtek adapter.
LIBWLAN_API int do_repeater_mode_base_db_realtek();

/// @}
}
