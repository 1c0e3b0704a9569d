// SPDX-License-Identifier: MIT
/// @file
/// Class wlan: a MediaTek/Ralink adapter, driven through its driver's private requests.

#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

// linux/wireless.h includes linux/if.h, which goes with the C library's net/if.h in this order
// only. With linux/if.h included already, net/if.h would conflict with it and is not needed.
#ifndef _LINUX_IF_H
#include <net/if.h>
#endif
#include <sys/socket.h>

#include <linux/wireless.h>

#include "libwlan/api.h"
#include "libwlan/settings.h"
#include "libwlan/sites.h"

/// One request's view of a MediaTek/Ralink adapter: construct, init(), one operation, release().
///
/// An object is one thread's, and no operation may be called before init(). Every settings
/// operation sends its Key=Value commands on the current interface (set_interface()); keys that
/// concern the AP-client carry the current prefix (set_prefix()). A command is cut at 255
/// characters, key included. Unless stated otherwise operations print nothing and return 0, or what
/// the driver's request returned (normally -1), or -1 for an argument out of range or a null text;
/// nothing is then sent.
class LIBWLAN_API wlan {
public:
    /// Marks the socket as closed; init() does the rest.
    wlan();

    /// Does nothing. In particular it leaves the socket open: only release() closes it.
    ~wlan();

    /// @name Command channel
    /// @{

    /// Opens a datagram socket for driver requests.
    /// @return its descriptor, or -1 with errno set.
    int open_socket();

    /// Reads the debug level from /tmp/debug_level (0 without the file) and opens the socket.
    /// @return 0, or -1 after "iw_socket" on standard error.
    int init();

    /// Closes the socket if its number is greater than 0.
    /// @return 0.
    int release();

    /// Makes `name` the interface of the commands that follow. 64 characters of it are kept,
    /// without a terminator when all are used, of which the driver sees 16.
    /// @return 0, or -1 for a null name.
    int set_interface(char* name);

    /// Makes `text` ("ApCli" or empty) the prefix of AP-client keys; kept like an interface.
    /// @return 0, or -1 for a null text.
    int set_prefix(char* text);

    /// Sends one Key=Value command through the driver's private set request, on which every
    /// settings operation relies. With a debug level other than 0 the command is traced to
    /// /dev/console; with 0 one more stream of it stays open.
    /// @param text the command, of any length; its length without the NUL goes to the driver, as 16
    ///        bits.
    /// @return the result of the ioctl, or -1 for a null text.
    int simple_set_private(char* text);

    /// Runs "iwpriv INTERFACE set TEXT" (cut at 511 characters) and waits for it. The shell reads
    /// the text, so it must not come from outside.
    /// @return 0, whatever the tool answered, also for a null text, which runs nothing.
    int command_set_private(char* text);

    /// Runs "ifconfig INTERFACE ARGUMENTS" (cut at 63 characters) and waits for it. The shell reads
    /// both texts, so they must not come from outside.
    /// @return the status of `system()`, or -1 for a null text.
    int ifconfig(char* interface, char* arguments);

    /// @}
    /// @name Settings
    /// @{

    /// Sends the authentication mode as settings.h tells; 8 and above are out of range.
    int set_auth(auth_from_cam auth);

    /// Sends the cipher and what belongs to it: for WEP the default key number and that key, for
    /// the WPA ciphers the SSID and the passphrase. All commands are sent, also after one that
    /// failed.
    /// @param key WEP key or passphrase, sent as it is; not used with ENC_NONE.
    /// @param ssid used with the WPA ciphers.
    /// @param key_index WEP key number, 1 to 4 for the driver and not checked; used with WEP.
    /// @return the OR of all results; -1 for a cipher of 5 or more or a null text that is needed.
    int set_enc_and_key(enc_from_cam enc, char* key, char* ssid, unsigned char key_index);

    /// Sends the SSID: up to 245 bytes with the prefix "ApCli", 250 without.
    int set_ssid(char* ssid);

    /// Sends the BSSID to join, as it is; "00:00:00:00:00:00" stands for any.
    int set_bssid(char* bssid);

    /// Fixes the channel, any number, when `mode` is APCLI_BY_BSSID; for every other mode asks the
    /// AP-client to connect by itself and sends no channel.
    int set_channel(int channel, set_apcli_from_cam mode);

    /// Switches the AP-client link on or off.
    int enable_apcli(bool on);

    /// Switches the radio on or off.
    int set_radio(bool on);

    /// Chooses the driver's method of automatic channel selection, by the driver's number for it.
    int set_channel_algorithm(int algorithm);

    /// Sends the region code of the store (PIB): the 5 GHz one on "apclii0", the 2.4 GHz one
    /// elsewhere.
    int set_region();

    /// Prepares station mode: set_region().
    /// @return 0, also when the driver refused the region.
    int set_infra_mode();

    /// Prepares access-point mode: set_region(), then set_radio(true).
    /// @return the result of set_radio() alone.
    int set_ap_mode();

    /// Does nothing: a step of the mode sequences. The name is not used.
    /// @return 0.
    int may_enable_device(char* name);

    /// Switches 802.1X off.
    int dis_8021x();

    /// Asks the driver for a site survey, without waiting for it.
    /// @param value the driver's argument, "1" for all channels.
    int active_scan(char* value);

    /// Pins the radio to the channel that the associated "wlan0" is on; without an association
    /// nothing is sent. Leaves "wlan0" as the current interface.
    int set_current_channel();

    /// @}
    /// @name Operating modes
    /// @{

    /// Joins a network as a station through the AP-client: on "wlan0" (channels 1 to 14), on
    /// "apclii0" (15 and above), or with channel 0 first on one and, 2 seconds later, on the other.
    /// Blocks for 2 seconds with channel 0.
    /// @param bssid used, and then not null, when `mode` is APCLI_BY_BSSID; cut at 30 characters.
    /// @param channel with channel 0 and APCLI_BY_BSSID the driver is sent 999 and 1000, which mark
    ///        the two passes.
    /// @param key_index WEP key number, as in set_enc_and_key().
    /// @return 0, or -1 after the failing step's message on standard error. A failure on "apclii0"
    ///         after a successful "wlan0" prints its message and still returns 0.
    int do_infra_mode(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc, char* key,
                      int channel, set_apcli_from_cam mode, unsigned char key_index);

    /// Sets up the access point on "ra0", with WEP key number 1. The channel is not touched.
    /// @return 0, or -1 after the failing step's message on standard error.
    int do_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

    /// Sets up the access point, lets the driver choose its channel, then joins a network as
    /// do_infra_mode() does; not without the access point.
    /// @param key_index the station's WEP key number, 0 to 255 as a byte.
    /// @return 0, or -1 after the failing step's message on standard error.
    int do_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                         char* client_ssid, char* client_bssid, auth_from_cam client_auth,
                         enc_from_cam client_enc, char* client_key, int channel,
                         set_apcli_from_cam mode, char key_index);

    /// @}
    /// @name Survey
    /// @{

    /// Surveys the air on "ra0", raising it for the while when it is down, and rewrites
    /// /tmp/ap_list from the whole list. A failure leaves a raised interface up. The driver gives 8
    /// KiB of table at most.
    /// @param list appended to.
    /// @param trigger true has the driver scan afresh and waits 4 seconds; false reads the table
    ///        that it holds.
    /// @return 0, also after a failure that stands on standard error; -1 when a line was rejected:
    ///         cut short, of a network with a login on a server, hidden, or in version 2 of a name
    ///         that is listed with at least that signal. The others are listed all the same.
    int do_site_survey(std::vector<sites>& list, bool trigger);

    /// Reads a survey table in either layout. A version-2 header is remembered in `site_survey_v2`
    /// until init(); such a list is sorted with compare_signal().
    /// @param text the NUL-terminated table, header first; not changed.
    /// @return 0, or -1 when at least one line was rejected, or for a null text.
    int parse_site_survey(std::vector<sites>& list, char* text);

    /// Appends the access point of one line of a version-1 table.
    /// @return 0, or -1 when the line was rejected.
    int parse_element(std::vector<sites>& list, std::string line);

    /// Appends the access point of one line of a version-2 table, in place of a weaker one of its
    /// name. A network type other than infrastructure is told on standard error.
    /// @return 0, or -1 when the line was rejected.
    int parse_element_v2(std::vector<sites>& list, std::string line);

    /// Cuts spaces, tabs and line feeds off both ends; not carriage returns.
    void trim(std::string& text);

    /// Cuts a quoted name out of its column: what stands between the first character and the last
    /// quote, or all the rest without one.
    /// @throw std::out_of_range for an empty text.
    void trimForSSID(std::string& text);

    /// Writes the list to /tmp/ap_list anew: channel, BSSID and quoted name of each access point. A
    /// reader may find it half written. "Open /tmp/ap_list fail" on standard error when it cannot.
    void store_ap_list(std::vector<sites>& list);

    /// @}
    /// @name Push-button WPS
    /// In this order: init_wps(); do_wps(0); does_it_finish(0) until it answers 1 or the caller
    /// gives up; on success update_wsc_to_db_and_action() and does_network_need_to_act();
    /// stop_wps(0) to end an unfinished session; release_wps(). The library neither waits nor times
    /// out in between. 0 is the only index there is ("wlan0"); another sends nothing.
    /// @{

    /// Takes the AP-client down with `ifconfig`, then init().
    /// @return the result of init().
    int init_wps();

    /// release().
    int release_wps();

    /// Takes the AP-client down and up with `ifconfig` and starts a push-button session on it.
    /// Interface and prefix stay set.
    /// @return 0, or -1 after the failing step's message on standard error.
    int do_wps(int index);

    /// Sends the five keys that start a session on the current interface, the starting one last.
    /// All are sent, also after one that failed.
    /// @return the OR of all results.
    int set_wsc();

    /// Asks the driver how far the session is and prints the answer's name, or its number when it
    /// has none, to standard output: the only place where a failed session shows.
    /// @return 1 when the network was obtained; else 0, also when the session or the request
    ///         failed, or for another index than 0.
    int does_it_finish(int index);

    /// Stores the network that the driver obtained as the client settings: SSID of up to 64 bytes,
    /// key of up to 256. A network without a key keeps the stored one. The channel is
    /// get_client_channel()'s, whatever it answers.
    /// @param name interface, null for "ra0"; the shell reads it.
    /// @return 0; -22 when the driver has no profile or it makes no sense, -13 when the store
    ///         failed. Nothing is then stored, and most reasons stand on standard error.
    int update_wsc_to_db_and_action(char* name);

    /// Asks the `iwgetid` tool for the channel of an interface and waits for it.
    /// @param name interface, null for "ra0". The shell reads it, so it must not come from outside;
    ///        cut at 103 characters.
    /// @return the channel, 0 when the tool tells none or is missing, -122 when no program can be
    ///         started.
    int get_client_channel(char* name);

    /// With the cable plugged in (probe_link()), takes "wlan0" down; without it has
    /// /etc/rc.d/init.d/network.sh bring the stored network up, in the background.
    /// @return 0.
    int does_network_need_to_act();

    /// Ends a session, or does no harm.
    /// @return the result of the driver's request, or -1 for an index other than 0.
    int stop_wps(int index);

    /// @}
    /// @name Baseband
    /// @{

    /// Changes bits of one baseband register: reads it, puts in the bits of `value` under `mask`
    /// and writes it back. Other users of the driver can come in between.
    /// @param interface of up to 15 characters; the current one is neither used nor changed.
    /// @param reg the register as the driver writes it, of up to 255 characters.
    /// @param value the new bits, in the places that they have in the register.
    /// @param mask a bit of 1 for each bit of the register to change.
    /// @return 0; else the failing request's result, or -1 for an answer that is none, after a
    ///         message on standard output; -1 for an argument that does not fit.
    int do_set_bbp(char* interface, char* reg, int value, int mask);

    /// @}
    /// @name Data
    /// @{

    int debug_level = 0;          ///< 0 quiet, else commands are traced to the console
    int sock = -1;                ///< socket of the driver requests, -1 when closed
    FILE* console;                ///< last stream of /dev/console, null once a trace has closed it
    char ifname[64];              ///< current interface
    char prefix[64];              ///< prefix of AP-client keys
    char command[256];            ///< Key=Value text of the command being sent, NUL-terminated
    iwreq request;                ///< request handed to the driver
    unsigned char site_survey_v2; ///< 1 when the driver's survey table has the version-2 columns

    /// @}
};

static_assert(sizeof(iwreq) == 32, "binary interface");
static_assert(offsetof(wlan, debug_level) == 0, "binary interface");
static_assert(offsetof(wlan, sock) == 4, "binary interface");
static_assert(offsetof(wlan, console) == 8, "binary interface");
static_assert(offsetof(wlan, ifname) == 8 + sizeof(FILE*), "binary interface");
static_assert(offsetof(wlan, prefix) == offsetof(wlan, ifname) + 64, "binary interface");
static_assert(offsetof(wlan, command) == offsetof(wlan, prefix) + 64, "binary interface");
static_assert(offsetof(wlan, request) == offsetof(wlan, command) + 256, "binary interface");
static_assert(offsetof(wlan, site_survey_v2) == offsetof(wlan, request) + 32, "binary interface");
