// SPDX-License-Identifier: MIT
/// @file
/// Class wext: a Realtek adapter, driven through Wireless Extensions, wpa_supplicant and hostapd.

#pragma once

#include <cstddef>
#include <cstdio>
#include <vector>

#include "libwlan/api.h"
#include "libwlan/scan.h"
#include "libwlan/settings.h"
#include "libwlan/sites.h"

/// One request's view of a Realtek adapter: construct, init(), one operation, release().
///
/// An object is one thread's, and no operation may be called before init(). The station runs on
/// "wlan0" under wpa_supplicant, the access point on "wlan1" under hostapd.
class LIBWLAN_API wext {
public:
    /// Marks the socket as closed and the console trace as off.
    wext();

    /// Does nothing. In particular it leaves the socket open: only release() closes it.
    ~wext();

    /// @name Lifecycle
    /// @{

    /// Opens a datagram socket for Wireless Extensions requests.
    /// @return its descriptor, or -1 with errno set.
    int open_socket();

    /// Reads the debug level from /tmp/debug_level (0 without the file) and opens the socket.
    /// @param stop_supplicant true ends a running wpa_supplicant through its pid file, waiting 10
    ///        seconds at most and going on if it lives; false leaves it alone.
    /// @return 0, or -1 after "iw_socket" on standard error.
    int init(bool stop_supplicant);

    /// Closes the socket if its number is greater than 0.
    /// @return 0.
    int release();

    /// Brings an interface up and checks that it is.
    /// @param log receives the messages for an empty name and for giving up, null for none; other
    ///        errors go to standard error.
    /// @param ifname of up to 15 characters; a longer name is an interface that does not exist, and
    ///        is not tried again.
    /// @param retries how many tries, with a second after each that failed; 0 or less tries once.
    /// @return 0 when the interface is up, else -1.
    int network_nic_ifc_up(FILE* log, const char* ifname, int retries);

    /// @}
    /// @name Station
    /// @{

    /// Writes /tmp/wpa_supplicant.conf for one network. With a null name or a null key that is
    /// needed, a line feed in one of them, or a store that fails (cam_get_system()), nothing is
    /// written.
    /// @param ssid of up to 120 bytes; a double quote is not escaped.
    /// @param auth open, WPA personal or WPA2 personal; anything else leaves the file unfinished,
    ///        with a message on standard error.
    /// @param enc not used: the daemon negotiates the cipher.
    /// @param key passphrase of up to 120 characters, or raw key when it is exactly 64 long; not
    ///        used for an open network.
    /// @return 0 when the file is complete, else -1.
    int create_wpa_supplicant_config(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

    /// Writes the configuration and starts wpa_supplicant on "wlan0", also when writing failed:
    /// then with the file of before. With a debug level that has the bit of value 2 the daemon runs
    /// in the foreground and the call lasts as long as it.
    /// @return the result of create_wpa_supplicant_config(); nothing tells whether the daemon runs.
    int do_infra_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

    /// @}
    /// @name Access point
    /// @{

    /// Writes /tmp/hostapd.conf, with the channel of get_best_channel(). Null texts, line feeds and
    /// a store that fails as in create_wpa_supplicant_config().
    /// @param ssid of up to 121 bytes.
    /// @param auth WPA, WPA2 or mixed personal; anything else gives an open network.
    /// @param enc ENC_TKIP or ENC_AES; anything else offers both.
    /// @param key passphrase of up to 112 characters, also when it is 64 long; not used for an open
    ///        network.
    /// @return 0 when the file is complete, else -1.
    int create_hostapd_config(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

    /// Writes the configuration, stops a running hostapd, waiting 10 seconds at most, and starts a
    /// new one on "wlan1", also when writing failed. The debug level counts as in do_infra_mode().
    /// @return the result of create_hostapd_config(); nothing tells whether the daemon runs.
    int do_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

    /// do_ap_mode(), then do_infra_mode(); the station is not started when the access point failed.
    /// @return 0 or -1.
    int do_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                         char* sta_ssid, auth_from_cam sta_auth, enc_from_cam sta_enc,
                         char* sta_key);

    /// @}
    /// @name Survey
    /// @{

    /// Scans on "wlan0" and appends what it finds to `list`, which is then sorted by name. Blocks
    /// for 60 seconds at most until the interface is up and 76 until there are results; tells what
    /// it does on /dev/console, which it closes.
    /// @return 0 or -1.
    int do_site_survey(std::vector<sites>& list);

    /// Brings an interface up, trying for 60 seconds at most, and asks the driver to scan.
    /// @param log receives the messages, except those of system calls; may be null.
    /// @param ifname as in network_nic_ifc_up().
    /// @return 0 or -1.
    int driver_scan(FILE* log, const char* ifname);

    /// Waits for the results of a scan, 15.15 seconds at most, and reads them.
    /// @param log as in driver_scan().
    /// @param ifname its first 16 characters count.
    /// @param results room for max_scan_results records.
    /// @return how many records were filled, or -1.
    int driver_get_scan_results(FILE* log, const char* ifname, scan_result_t* results);

    /// Appends the usable ones of `count` records to `list`: named, of the wanted mode, not WEP
    /// only, and of a name that is not listed yet.
    /// @param log not used.
    /// @param ifname asked for its range; its first 15 characters count.
    /// @param count of `results`, as driver_get_scan_results() returned it.
    /// @param accepted receives how many passed the filters, also of names that were listed; not
    ///        null.
    /// @param filter wanted mode; infrastructure and master stand for each other. Only masters are
    ///        listed.
    /// @return 0, or -1 when the driver does not tell its range.
    int get_scan_results(FILE* log, const char* ifname, int count, int* accepted,
                         scan_result_t* results, WIRELESS_MODE filter, std::vector<sites>& list);

    /// @}
    /// @name Data
    /// @{

    int debug_flag = 0; ///< number in /tmp/debug_level: other than 0 traces to the console
    int debug_level;    ///< the same, 0 without the file; bit of value 2: daemons in the foreground
    int sock = -1;      ///< Wireless Extensions socket, -1 when closed
    FILE* console;      ///< last stream of /dev/console, null once a trace has closed it

    /// @}
};

static_assert(offsetof(wext, debug_flag) == 0, "binary interface");
static_assert(offsetof(wext, debug_level) == 4, "binary interface");
static_assert(offsetof(wext, sock) == 8, "binary interface");
static_assert(offsetof(wext, console) == (sizeof(FILE*) == 8 ? 16 : 12), "binary interface");

extern "C" {

/// Reads the channel that the Realtek driver recommends for an access point from
/// /proc/net/rtl8188eu/wlan1/best_channel, and prints it to standard output. The other drivers'
/// files are not looked at; part of the interface.
/// @param channel receives the recommendation; untouched when the file has none.
/// @return what `channel` then holds, or 1 when the file cannot be read or `channel` is null.
LIBWLAN_API int get_best_channel(int* channel);
}
