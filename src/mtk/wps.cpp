// SPDX-License-Identifier: MIT
// Push-button WPS on a MediaTek/Ralink adapter: its start, and storing what it obtained.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "base/program.h"
#include "base/text.h"
#include "libwlan/link_status.h"
#include "libwlan/store.h"
#include "libwlan/wlan.h"
#include "mtk/driver.h"
#include "mtk/driver_answers.h"
#include "mtk/interfaces.h"

using namespace libwlan;
using namespace libwlan::mtk;

namespace {

constexpr int store_failed = -13;
constexpr int driver_failed = -22;
constexpr int command_failed = -122;

constexpr unsigned short profile_size = 4096; // the most that the driver gives

struct profile_word {
    char text[8];
    unsigned char value;
};

// The driver's words for what the store numbers. A WPA2 network with a login on a server is kept
// apart from one with a passphrase; a WPA one is not.
constexpr profile_word profile_auths[] = {
    {"OPEN", AUTH_OPEN},  {"WPAPSK", AUTH_WPAPSK}, {"SHARED", AUTH_SHARED},
    {"WPA", AUTH_WPAPSK}, {"WPA2", AUTH_WPA2},     {"WPA2PSK", AUTH_WPA2PSK},
};
constexpr profile_word profile_encs[] = {
    {"NONE", ENC_NONE},
    {"WEP", ENC_WEP},
    {"TKIP", ENC_TKIP},
    {"AES", ENC_AES},
};

template <std::size_t count>
const profile_word* find(const profile_word (&words)[count], const char* text) {
    for (const profile_word& word : words) {
        if (std::strcmp(word.text, text) == 0)
            return &word;
    }
    return nullptr;
}

/// Puts the obtained network into the client settings.
/// @return whether all of it is understood.
bool fill_client(_wireless_setting& setting, const wps_profile& profile) {
    setting.client_enabled = 1;
    fill_field(setting.client_ssid, profile.ssid);
    const profile_word* const auth = find(profile_auths, profile.auth);
    if (auth == nullptr) {
        std::fprintf(stderr, "parse auth fail %d %s\n",
                     static_cast<int>(std::strtol(profile.number, nullptr, 10)), profile.auth);
        return false;
    }
    setting.client_auth = static_cast<auth_from_cam>(auth->value);
    const profile_word* const enc = find(profile_encs, profile.enc);
    if (enc == nullptr) {
        std::fprintf(stderr, "parse enc fail %s\n", profile.enc);
        return false;
    }
    setting.client_enc = static_cast<enc_from_cam>(enc->value);
    if (profile.key != nullptr) // an open network leaves the old key for the next one
        fill_field(setting.client_key, profile.key);
    return true;
}

/// @return the message of the step that failed, or null.
const char* start_session(wlan& radio, char* interface) {
    return radio.set_interface(interface) != 0   ? "set interface failed\n"
           : radio.set_prefix(apcli_prefix) != 0 ? "set prefix failed\n"
           : radio.set_region() != 0             ? "set region failed\n"
           : radio.set_wsc() != 0                ? "set wsc failed\n"
                                                 : nullptr;
}

} // namespace

int wlan::do_wps(int index) {
    char* const interface = wps_interface(index);
    if (interface == nullptr)
        return -1;
    ifconfig(interface, ifconfig_down); // the driver is to start from a clean state
    ifconfig(interface, ifconfig_up);
    if (const char* message = start_session(*this, interface)) {
        std::fputs(message, stderr);
        return -1;
    }
    return 0;
}

int wlan::update_wsc_to_db_and_action(char* name) {
    char* const interface = name != nullptr ? name : access_point_interface;
    char text[profile_size + 1]{}; // a profile that fills its room still ends
    if (ask_driver(*this, driver_wps_profile, interface, text, profile_size) != 0) {
        std::fputs("ioctl failed: update_wsc_to_db_and_action\n", stderr);
        return driver_failed;
    }
    _wireless_setting setting{};
    if (cam_get_client(&setting) != 0) {
        std::fputs("get client set failed\n", stderr);
        return store_failed;
    }
    const std::optional<wps_profile> profile = read_wps_profile(text);
    if (!profile || !fill_client(setting, *profile))
        return driver_failed;
    setting.client_channel = get_client_channel(interface);
    _cam_actions no_actions{};
    if (cam_set_client(&setting, &no_actions, 0, 0) != 0) {
        std::fputs("set client failed\n", stderr);
        return store_failed;
    }
    return 0;
}

int wlan::get_client_channel(char* name) {
    char line[128];
    cut_text(line, sizeof line, "iwgetid --raw --channel %s",
             name != nullptr ? name : access_point_interface);
    const unique_pipe tool = read_program(line);
    return tool != nullptr ? read_integer(tool.get()).value_or(0) : command_failed;
}

int wlan::does_network_need_to_act() {
    if (probe_link() == 1) {
        ifconfig(station_2g_interface, ifconfig_down);
    } else {
        run_program("/etc/rc.d/init.d/network.sh reload &");
    }
    return 0;
}
