// SPDX-License-Identifier: MIT
// Operating modes of a MediaTek/Ralink adapter: which settings are sent, and in which order.

#include <cstdio>
#include <cstring>

#include <unistd.h>

#include "base/text.h"
#include "libwlan/store.h"
#include "libwlan/wlan.h"
#include "mtk/driver.h"
#include "mtk/interfaces.h"

using namespace libwlan;
using namespace libwlan::mtk;

namespace {

constexpr unsigned char access_point_key_index = 1;

// An automatic channel sets up both AP-client interfaces, one pass each. The driver sees the marker
// of the pass as an impossible channel, which it ignores.
constexpr int automatic_channel = 0;
constexpr int first_pass = 999;
constexpr int second_pass = 1000;
constexpr unsigned int pause_between_passes = 2; // seconds

constexpr int first_5g_channel = 15;

struct station_settings {
    char* ssid;
    char* bssid;
    auth_from_cam auth;
    enc_from_cam enc;
    char* key;
    set_apcli_from_cam mode;
    unsigned char key_index;
};

int set_bssid_to_join(wlan& radio, const station_settings& station) {
    const char* bssid = station.mode == APCLI_BY_BSSID ? station.bssid : "00:00:00:00:00:00";
    if (bssid == nullptr)
        return -1;
    char text[31];
    cut_text(text, sizeof text, "%s", bssid);
    return radio.set_bssid(text);
}

/// Sets up the AP-client on one interface.
/// @return the message of the step that failed, or null.
// NOLINTNEXTLINE(readability-function-cognitive-complexity): steps in a row, none in another
const char* join_on(wlan& radio, char* interface, int channel, const station_settings& station) {
    return radio.set_interface(interface) != 0       ? "set interface failed\n"
           : radio.set_prefix(apcli_prefix) != 0     ? "set prefix failed\n"
           : radio.may_enable_device(interface) != 0 ? "enable device failed\n"
           : radio.enable_apcli(false) != 0          ? "enable apcli failed\n"
           : radio.set_infra_mode() != 0             ? "set infra failed\n"
           : radio.set_auth(station.auth) != 0       ? "set auth fail\n"
           : radio.set_enc_and_key(station.enc, station.key, station.ssid, station.key_index) != 0
               ? "set enc and key fail\n"
           : radio.set_ssid(station.ssid) != 0             ? "set ssid fail\n"
           : set_bssid_to_join(radio, station) != 0        ? "set bssid fail\n"
           : radio.enable_apcli(true) != 0                 ? "set apcli fail\n"
           : radio.set_channel(channel, station.mode) != 0 ? "set channel fail\n"
                                                           : nullptr;
}

/// Sets up the access point.
/// @return the message of the step that failed, or null.
// NOLINTNEXTLINE(readability-function-cognitive-complexity): steps in a row, none in another
const char* open_access_point(wlan& radio, char* ssid, auth_from_cam auth, enc_from_cam enc,
                              char* key) {
    return radio.set_interface(access_point_interface) != 0       ? "set interface fail\n"
           : radio.set_prefix(no_prefix) != 0                     ? "set prefix fail\n"
           : radio.may_enable_device(access_point_interface) != 0 ? "enable device fail\n"
           : radio.set_ap_mode() != 0                             ? "set ap fail\n"
           : radio.set_auth(auth) != 0                            ? "set auth fail\n"
           : radio.set_enc_and_key(enc, key, ssid, access_point_key_index) != 0
               ? "set enc and key fail\n"
           : radio.set_ssid(ssid) != 0 ? "set ssid fail\n"
                                       : nullptr;
}

} // namespace

int wlan::set_region() {
    PIB product;
    product.init();
    const int region = product.getRegion();
    if (std::strncmp(ifname, station_5g_interface, sizeof ifname) == 0)
        return send_command(*this, no_prefix, "CountryRegionABand=%d", product.getRegionABand());
    return send_command(*this, no_prefix, "CountryRegion=%d", region);
}

int wlan::set_infra_mode() {
    set_region(); // part of the interface: joining goes on when the driver refuses the region
    return 0;
}

int wlan::set_ap_mode() {
    set_region();
    return set_radio(true);
}

int wlan::do_infra_mode(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc, char* key,
                        int channel, set_apcli_from_cam mode, unsigned char key_index) {
    const station_settings station{ssid, bssid, auth, enc, key, mode, key_index};
    char* interface = station_2g_interface;
    int result = -1;
    for (;;) {
        if (channel >= first_5g_channel) {
            interface = station_5g_interface;
        } else if (channel == automatic_channel) {
            channel = first_pass;
        }

        if (const char* message = join_on(*this, interface, channel, station)) {
            std::fputs(message, stderr);
            return result; // 0 on the second pass: the camera can join on the first band
        }
        result = 0;
        if (channel != first_pass)
            return result;
        channel = second_pass;
        sleep(pause_between_passes);
    }
}

int wlan::do_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    if (const char* message = open_access_point(*this, ssid, auth, enc, key)) {
        std::fputs(message, stderr);
        return -1;
    }
    return 0;
}

int wlan::do_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                           char* client_ssid, char* client_bssid, auth_from_cam client_auth,
                           enc_from_cam client_enc, char* client_key, int channel,
                           set_apcli_from_cam mode, char key_index) {
    if (do_ap_mode(ap_ssid, ap_auth, ap_enc, ap_key) != 0)
        return -1;
    set_channel_algorithm(access_point_channel_algorithm);
    const int joined = do_infra_mode(client_ssid, client_bssid, client_auth, client_enc, client_key,
                                     channel, mode, static_cast<unsigned char>(key_index));
    return joined == 0 ? 0 : -1;
}
