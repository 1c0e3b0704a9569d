#pragma once

/// @file
/// Radio modes on whichever adapter is plugged in. Every entry point looks for the adapter family
/// afresh, runs one request on a fresh driver object and returns 0 for success and -1 for failure.
/// The driver's and the sequences' messages go to standard error; a store that fails speaks for
/// itself. A request that failed on the radio leaves one socket open. On MediaTek a station waits
/// 2 seconds between two bands; on Realtek each daemon that has to end is waited for, 10 seconds at
/// most.
///
/// Names ending in `_base_db` take their settings from the configuration store. SSIDs, BSSIDs and
/// keys are NUL-terminated texts. Callers run one request at a time.

#include "libwlan/api.h"
#include "libwlan/settings.h"

extern "C" {

/// Looks for a MediaTek/Ralink USB adapter (vendor 148f) in /proc/bus/usb/devices or, without that
/// file, in what `lsusb` prints.
/// @return 1 when there is one, else 0.
LIBWLAN_API int isMtkWifi();

/// Sets up the access point. On Realtek this writes /tmp/hostapd.conf and restarts hostapd.
LIBWLAN_API int run_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

/// Joins a network as a station. On Realtek this writes /tmp/wpa_supplicant.conf and restarts
/// wpa_supplicant; BSSID, channel and key index are then not used.
/// @param channel 0 automatic, 1 to 14 2.4 GHz, 15 and above 5 GHz.
/// @param key_index WEP key number.
LIBWLAN_API int run_infra_mode(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc,
                               char* key, int channel, unsigned char key_index);

/// Access point and station at once. On Realtek BSSID and channel are not used.
LIBWLAN_API int run_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc,
                                  char* ap_key, char* client_ssid, char* client_bssid,
                                  auth_from_cam client_auth, enc_from_cam client_enc,
                                  char* client_key, int channel);

/// Station mode with the stored client settings.
LIBWLAN_API int run_infra_mode_base_db();

/// Repeater mode with the stored access-point and client settings.
LIBWLAN_API int run_repeater_mode_base_db();

// --- The same requests on a given family

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
}
