// SPDX-License-Identifier: MIT
// Operating modes of a Realtek adapter: which daemon runs, and how it is started.

#include <csignal>

#include "base/message.h"
#include "base/program.h"
#include "libwlan/process.h"
#include "libwlan/wext.h"
#include "realtek/daemons.h"

using namespace libwlan;

namespace {

/// The two command lines that start a daemon.
struct daemon_commands {
    const char* foreground; // lasts as long as the daemon
    const char* background;
};

constexpr daemon_commands wpa_supplicant = {
    "wpa_supplicant -d -c " WPA_SUPPLICANT_CONFIG " -i " REALTEK_STATION
    " -P " WPA_SUPPLICANT_PID_FILE,
    "wpa_supplicant -B -c " WPA_SUPPLICANT_CONFIG " -i " REALTEK_STATION
    " -P " WPA_SUPPLICANT_PID_FILE,
};

constexpr daemon_commands hostapd = {
    "hostapd -d " HOSTAPD_CONFIG " -P " HOSTAPD_PID_FILE,
    "hostapd -B " HOSTAPD_CONFIG " -P " HOSTAPD_PID_FILE,
};

/// Starts a daemon in the form that the debug level of `radio` asks for, tracing the command line
/// to the console.
void start_daemon(wext& radio, const daemon_commands& commands) {
    const bool in_foreground = (static_cast<unsigned int>(radio.debug_level) & debug_mask) != 0;
    const char* command = in_foreground ? commands.foreground : commands.background;
    radio.console = open_console();
    trace(radio.console, radio.debug_flag, "%s", command);
    run_program(command);
}

} // namespace

// Part of the interface: a daemon is started also when its file could not be written.

int wext::do_infra_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    const int result = create_wpa_supplicant_config(ssid, auth, enc, key);
    start_daemon(*this, wpa_supplicant); // init() has stopped the old one
    return result;
}

int wext::do_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    const int result = create_hostapd_config(ssid, auth, enc, key);
    send_signal_ps(HOSTAPD_PID_FILE, SIGTERM, 1);
    start_daemon(*this, hostapd);
    return result;
}

int wext::do_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                           char* sta_ssid, auth_from_cam sta_auth, enc_from_cam sta_enc,
                           char* sta_key) {
    if (do_ap_mode(ap_ssid, ap_auth, ap_enc, ap_key) != 0)
        return -1;
    return do_infra_mode(sta_ssid, sta_auth, sta_enc, sta_key) == 0 ? 0 : -1;
}
