#include <csignal>

#include "libwlan/process.h"
#include "libwlan/wext.h"
#include "realtek/daemon.h"
#include "realtek/daemon_files.h"

namespace {

constexpr daemon_commands wpa_supplicant = {
    "wpa_supplicant -d -c " WPA_SUPPLICANT_CONFIG " -i wlan0 -P " WPA_SUPPLICANT_PID_FILE,
    "wpa_supplicant -B -c " WPA_SUPPLICANT_CONFIG " -i wlan0 -P " WPA_SUPPLICANT_PID_FILE,
};

constexpr daemon_commands hostapd = {
    "hostapd -d " HOSTAPD_CONFIG " -P " HOSTAPD_PID_FILE,
    "hostapd -B " HOSTAPD_CONFIG " -P " HOSTAPD_PID_FILE,
};

} // namespace

// A daemon is started also when its file could not be written: the camera then comes back with the
// settings that it had.

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
