#pragma once

/// @file
/// Class wlan: a MediaTek/Ralink adapter, driven through its driver's private requests.

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

// linux/wireless.h pulls in linux/if.h, which only gets along with net/if.h in this order.
#include <net/if.h>
#include <sys/socket.h>

#include <linux/wireless.h>

#include "libwlan/api.h"
#include "libwlan/settings.h"
#include "libwlan/sites.h"

/// One request's view of a MediaTek/Ralink adapter: construct, init(), one operation, release().
///
/// The object lives on the stack of one call and is used by one thread. Every settings operation
/// sends its Key=Value commands on the current interface (set_interface()); keys that concern the
/// AP-client carry the current prefix (set_prefix()). Unless stated otherwise operations return 0,
/// or what the driver's request returned (normally -1), or -1 for an argument out of range; nothing
/// is then sent.
class LIBWLAN_API wlan {
public:
    /// Marks the socket as closed; init() does the rest.
    wlan();

    /// Does nothing. In particular it leaves the socket open: only release() closes it.
    ~wlan();

    // --- Command channel

    /// Opens a datagram socket for driver requests.
    /// @return its descriptor, or -1 with errno set.
    int open_socket();

    /// Reads the debug level from /tmp/debug_level (0 without the file) and opens the socket.
    /// @return 0, or -1 after "iw_socket" on standard error.
    int init();

    /// Closes the socket if its number is greater than 0.
    /// @return 0.
    int release();

    /// Makes `name` the interface of the commands that follow; 64 characters at most are kept, of
    /// which the driver sees 16.
    /// @return 0, or -1 for a null name.
    int set_interface(char* name);

    /// Makes `text` ("ApCli" or empty) the prefix of AP-client keys; 64 characters at most are
    /// kept.
    /// @return 0, or -1 for a null text.
    int set_prefix(char* text);

    /// Sends one Key=Value command through the driver's private set request. With a debug level
    /// other than 0 the command is traced to /dev/console; with 0 the console stream stays open in
    /// `console`.
    /// @param text the command; its length without the NUL goes to the driver, as 16 bits.
    /// @return the result of the ioctl, or -1 for a null text.
    int simple_set_private(char* text);

    /// Runs "iwpriv INTERFACE set TEXT" through the shell (511 characters at most), for commands
    /// that the driver takes from the tool only. Blocks until the tool ends.
    /// @return 0, whatever the tool answered.
    int command_set_private(char* text);

    /// Runs "ifconfig INTERFACE ARGUMENTS" through the shell (63 characters at most) and waits for
    /// it.
    /// @return the status of system().
    int ifconfig(char* interface, char* arguments);

    // --- Settings

    /// Sends the authentication mode. 3 and 4 are sent as WPA personal, 6 as automatic WEP; 8 and
    /// above are out of range.
    int set_auth(auth_from_cam auth);

    /// Sends the cipher and what belongs to it: for WEP the default key number and that key, for
    /// the WPA ciphers the SSID and the passphrase. All commands are sent, also after one that
    /// failed.
    /// @param key WEP key or passphrase; not used with ENC_NONE.
    /// @param ssid used with the WPA ciphers.
    /// @param key_index WEP key number, used with WEP.
    /// @return the OR of all results; -1 for a cipher of 5 or more or a null text that is needed.
    int set_enc_and_key(enc_from_cam enc, char* key, char* ssid, unsigned char key_index);

    /// Sends the SSID.
    int set_ssid(char* ssid);

    /// Sends the BSSID to join.
    int set_bssid(char* bssid);

    /// Fixes the channel when `mode` is APCLI_BY_BSSID; for every other mode asks the AP-client to
    /// connect by itself and sends no channel.
    int set_channel(int channel, set_apcli_from_cam mode);

    /// Switches the AP-client link on or off.
    int enable_apcli(bool on);

    /// Switches the radio on or off.
    int set_radio(bool on);

    /// Chooses the driver's automatic channel selection method.
    int set_channel_algorithm(int algorithm);

    /// Sends the store's region code: the 5 GHz one on "apclii0", the 2.4 GHz one elsewhere.
    int set_region();

    /// Prepares station mode: set_region().
    /// @return 0, also when the driver refused the region.
    int set_infra_mode();

    /// Prepares access-point mode: set_region(), then set_radio(true).
    /// @return the result of set_radio() alone.
    int set_ap_mode();

    /// Hook of the mode sequences for adapters whose interface must be enabled first; none needs
    /// it.
    /// @return 0.
    int may_enable_device(char* name);

    /// Switches 802.1X off.
    int dis_8021x();

    /// Asks the driver for a site survey.
    int active_scan(char* value);

    /// Pins the radio to the channel that the associated "wlan0" is on; without an association
    /// nothing is sent. Leaves "wlan0" as the current interface.
    int set_current_channel();

    // --- Operating modes

    /// Joins a network as a station through the AP-client: on "wlan0" (channels 1 to 14), on
    /// "apclii0" (15 and above), or with channel 0 first on one and, 2 seconds later, on the other.
    /// @param bssid used when `mode` is APCLI_BY_BSSID; cut to 30 characters.
    /// @return 0, or -1 after the failing step's message on standard error. A failure on "apclii0"
    ///         after a successful "wlan0" prints its message and still returns 0.
    int do_infra_mode(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc, char* key,
                      int channel, set_apcli_from_cam mode, unsigned char key_index);

    /// Sets up the access point on "ra0".
    /// @return 0, or -1 after the failing step's message on standard error.
    int do_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key);

    /// Sets up the access point, lets the driver choose its channel, then joins a network as a
    /// station.
    /// @return 0, or -1 after the failing step's message on standard error.
    int do_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                         char* client_ssid, char* client_bssid, auth_from_cam client_auth,
                         enc_from_cam client_enc, char* client_key, int channel,
                         set_apcli_from_cam mode, char key_index);

    // --- Survey

    /// Surveys the air on "ra0", raising it for the while when it is down, and rewrites
    /// /tmp/ap_list from the whole list. A failure leaves a raised interface up.
    /// @param list appended to.
    /// @param trigger true has the driver scan afresh and waits 4 seconds; false reads the table
    ///        that it holds.
    /// @return 0, also after a failure that stands on standard error; -1 when a line was rejected.
    int do_site_survey(std::vector<sites>& list, bool trigger);

    /// Reads a survey table in either layout. A version-2 header is remembered in `site_survey_v2`;
    /// such a list is sorted with compare_signal().
    /// @param text the NUL-terminated table.
    /// @return 0, or -1 when at least one line was rejected.
    int parse_site_survey(std::vector<sites>& list, char* text);

    /// Appends the access point of one line of a version-1 table.
    /// @return 0, or -1 when the line was rejected.
    int parse_element(std::vector<sites>& list, std::string line);

    /// Appends the access point of one line of a version-2 table, in place of a weaker one of its
    /// name.
    /// @return 0, or -1 when the line was rejected.
    int parse_element_v2(std::vector<sites>& list, std::string line);

    /// Cuts spaces, tabs and line feeds off both ends.
    void trim(std::string& text);

    /// Cuts a quoted name out of its column: what stands between the first character and the last
    /// quote.
    /// @throw std::out_of_range for an empty text.
    void trimForSSID(std::string& text);

    /// Writes the list to /tmp/ap_list: channel, BSSID and quoted name of each access point.
    void store_ap_list(std::vector<sites>& list);

    // --- Push-button WPS
    //
    // In this order: init_wps(); do_wps(0); does_it_finish(0) until it answers 1 or the caller
    // gives up; on success update_wsc_to_db_and_action() and does_network_need_to_act();
    // stop_wps(0) to end an unfinished session; release_wps(). The library neither waits nor times
    // out in between. 0 is the only index there is ("wlan0").

    /// Takes the AP-client down, then init().
    /// @return the result of init().
    int init_wps();

    /// release().
    int release_wps();

    /// Cycles the AP-client and starts a push-button session on it. Interface and prefix stay set.
    /// @return 0, or -1 after the failing step's message on standard error.
    int do_wps(int index);

    /// Sends the keys that start a session on the current interface, the starting one last. All are
    /// sent, also after one that failed.
    /// @return the OR of all results.
    int set_wsc();

    /// Asks the driver how far the session is and prints the answer's name, or its number when it
    /// has none, to standard output.
    /// @return 1 when the network was obtained; else 0, also when the session or the request
    ///         failed.
    int does_it_finish(int index);

    /// Stores the network that the driver obtained as the client settings. A network without a key
    /// keeps the stored one. The channel is get_client_channel()'s, whatever it answers.
    /// @param name interface, null for "ra0".
    /// @return 0; -22 when the driver has no profile or it makes no sense, -13 when the store
    ///         failed. Nothing is then stored.
    int update_wsc_to_db_and_action(char* name);

    /// Asks the `iwgetid` tool for the channel of an interface and waits for it.
    /// @param name interface, null for "ra0".
    /// @return the channel, 0 when the tool tells none, -122 when the tool cannot be run.
    int get_client_channel(char* name);

    /// With the cable plugged in, takes "wlan0" down; without it has the camera's network script
    /// bring the stored network up, in the background.
    /// @return 0.
    int does_network_need_to_act();

    /// Ends a session, or does no harm.
    /// @return the result of the driver's request, or -1 for an index other than 0.
    int stop_wps(int index);

    // --- Baseband

    /// Changes bits of one baseband register: reads it, puts in the bits of `value` under `mask`
    /// and writes it back. Other users of the driver can come in between.
    /// @param interface of up to 15 characters; the current one is neither used nor changed.
    /// @param reg the register as the driver writes it, of up to 255 characters.
    /// @return 0; else the failing request's result, or -1 for an answer that is none, after a
    ///         message on standard output; -1 for an argument that does not fit.
    int do_set_bbp(char* interface, char* reg, int value, int mask);

    // --- Data

    int debug_level = 0;          ///< 0 quiet, else commands are traced to the console
    int sock = -1;                ///< socket of the driver requests, -1 when closed
    FILE* console;                ///< "/dev/console", opened for each command
    char ifname[64];              ///< current interface
    char prefix[64];              ///< prefix of AP-client keys
    char command[256];            ///< Key=Value text of the command being sent
    iwreq request;                ///< request handed to the driver
    unsigned char site_survey_v2; ///< 1 when the driver's survey table has the version-2 columns
};

static_assert(sizeof(iwreq) == 32);
static_assert(offsetof(wlan, debug_level) == 0);
static_assert(offsetof(wlan, sock) == 4);
static_assert(offsetof(wlan, console) == 8);
static_assert(offsetof(wlan, ifname) == 8 + sizeof(FILE*));
static_assert(offsetof(wlan, prefix) == offsetof(wlan, ifname) + 64);
static_assert(offsetof(wlan, command) == offsetof(wlan, prefix) + 64);
static_assert(offsetof(wlan, request) == offsetof(wlan, command) + 256);
static_assert(offsetof(wlan, site_survey_v2) == offsetof(wlan, request) + 32);
