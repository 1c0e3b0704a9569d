// SPDX-License-Identifier: MIT
// Everything that a camera program can ask of the library, on a camera that answers all of it.

#include "tests/support/operations.h"

#include <csignal>

#include "libwlan/libwlan.h"
#include "tests/support/camera_test.h"

namespace {

char ssid[] = "Office";
char bssid[] = "00:0c:43:10:20:01";
char key[] = "correct horse";
int channel = 1;
WIFI_INFO info;
_dhcp_server_setting dhcp;

int join(int on_channel) {
    return run_infra_mode(ssid, bssid, AUTH_WPA2PSK, ENC_TKIP_AES, key, on_channel, 1);
}

int repeat() {
    return run_repeater_mode(ssid, AUTH_WPA2PSK, ENC_AES, key, ssid, bssid, AUTH_WPA2PSK, ENC_AES, key, 6);
}

int survey() {
    std::vector<sites> list;
    return run_site_survey(list);
}

/// A whole push-button session, which is released however it ended.
int push_button() {
    wlan radio;
    if (radio.init_wps() != 0)
        return -1;
    int result = radio.do_wps(0);
    for (int look = 0; result == 0 && look < 20 && radio.does_it_finish(0) == 0; ++look) {
    }
    if (result == 0)
        result = radio.update_wsc_to_db_and_action(text("wlan0"));
    radio.does_network_need_to_act();
    radio.stop_wps(0);
    radio.release_wps();
    return result;
}

constexpr const char* mtk = "mediatek";
constexpr const char* realtek = "realtek";

} // namespace

scene camera_for(const operation& operation) {
    const access_point office = access_point(ssid).bssid(bssid).channel(6).wpa2(key).pressed_button();
    return scene(operation.family)
        .key("best_channel", 6)
        .air(office)
        .air(access_point("Attic").channel(36))
        .stored(stored_settings()
                    .access_point("Camera", "wpa2psk", "aes", "change-me-first")
                    .client(ssid, "wpa2psk", "aes", key)
                    .dhcp_server("192.168.10.1")
                    .system("Camera", "Example")
                    .region(5))
        .file("/tmp/hostapd.pid", {"4711"})
        .file("/tmp/wpa_supplicant.pid", {"4712"});
}

// The longest waits: a daemon has ten seconds to die, an interface a minute to come up, a scan five
// times fifteen seconds.
const std::vector<operation> operations = {
    {"access point", mtk, {0, -1}, 0, 0, [] { return run_ap_mode(ssid, AUTH_WPA2PSK, ENC_AES, key); }},
    {"station, 2.4 GHz", mtk, {0, -1}, 0, 0, [] { return join(6); }},
    {"station, 5 GHz", mtk, {0, -1}, 0, 0, [] { return join(36); }},
    {"station, automatic channel", mtk, {0, -1}, 0, 2, [] { return join(0); }},
    {"repeater", mtk, {0, -1}, 0, 0, repeat},
    {"stored access point", mtk, {0, -1}, 0, 10, run_ap_mode_base_db},
    {"stored station", mtk, {0, -1}, 0, 2, run_infra_mode_base_db},
    {"stored repeater", mtk, {0, -1}, 0, 2, run_repeater_mode_base_db},
    {"stop", mtk, {0}, 0, 10, run_stop_ap_mode},
    {"survey", mtk, {0, -1}, 0, 4, survey},
    {"baseband register", mtk, {0, -1}, 0, 0, [] { return run_set_bbp(text("ra0"), text("66"), 0x40, 0xf0); }},
    {"push button", mtk, {0, -1, -13, -22}, 0, 0, push_button},
    {"radio figures", mtk, {0, -1, -22}, 0, 0, [] { return get_wifi_info(info); }},
    {"adapter family", mtk, {0, 1}, 0, 0, isMtkWifi},
    {"associated", mtk, {0, 1}, 0, 0, [] { return does_wifi_associated("wlan0"); }},
    {"channel of an association", mtk, {-1, 6}, 0, 0, [] { return get_wifi_channel("wlan0"); }},
    {"channel", mtk, {-1, 1}, 1, 0, [] { return get_current_wifi_channel("wlan0"); }},
    {"interface up", mtk, {1, -1}, 0, 0, [] { return does_ifup("ra0"); }},
    {"interface exists", mtk, {1}, 0, 0, [] { return does_if_exist("ra0"); }},
    {"wired link", mtk, {0, 1}, 0, 0, probe_link},
    {"DHCP file", mtk, {0, -1}, 0, 0, [] { return create_udhcpd_config("ra0", &dhcp); }},
    {"touch", mtk, {0, 1}, 0, 0, [] { return touch("/tmp/touched"); }},
    {"access point", realtek, {0, -1}, 0, 20, [] { return run_ap_mode(ssid, AUTH_WPA2PSK, ENC_AES, key); }},
    {"station", realtek, {0, -1}, 0, 10, [] { return join(6); }},
    {"repeater", realtek, {0, -1}, 0, 20, repeat},
    {"stored access point", realtek, {0, -1}, 0, 30, run_ap_mode_base_db},
    {"stored station", realtek, {0, -1}, 0, 10, run_infra_mode_base_db},
    {"stored repeater", realtek, {0, -1}, 0, 20, run_repeater_mode_base_db},
    {"stop", realtek, {0}, 0, 20, run_stop_ap_mode},
    {"survey", realtek, {0, -1}, 0, 60 + 5 * 15 + 1, survey},
    {"recommended channel", realtek, {1, 6}, 0, 0, [] { return get_best_channel(&channel); }},
    {"signal to nobody", realtek, {0}, 0, 0, [] { return send_signal_ps("/tmp/none.pid", SIGTERM, 1); }},
};
