// SPDX-License-Identifier: MIT
// Setting a camera up from a phone: on the camera's own access point the phone hands over a
// network's name and key. The camera looks for that network and joins it; when that fails it is an
// access point again, so that the phone finds it for another try.
//
//     printf '%s\n' "$NAME" "$KEY" | join_from_phone

#include <algorithm>
#include <cstring>
#include <iostream>

#include <sys/stat.h>
#include <unistd.h>

#include <libwlan/libwlan.h>

namespace {

constexpr std::size_t longest_name = 32;
constexpr unsigned char first_key = 1;
constexpr int first_5g_channel = 15;
constexpr int patience = 20; // seconds until an association counts as failed
constexpr int lasting = 6;   // seconds that it must last: with a wrong key it is given up after 4

bool contains(const char* text, const char* word) {
    return std::strstr(text, word) != nullptr;
}

// Older MediaTek drivers have their own words, which have no hyphens.
auth_from_cam authentication_of(const sites& site) {
    const char* word = site.authentication;
    if (contains(word, "WPA2-PSK") || contains(word, "WPA2PSK"))
        return AUTH_WPA2PSK;
    return contains(word, "PSK") ? AUTH_WPAPSK : AUTH_OPEN;
}

enc_from_cam cipher_of(const sites& site) {
    if (contains(site.encryption, "AES"))
        return ENC_AES;
    if (contains(site.encryption, "TKIP"))
        return ENC_TKIP;
    return contains(site.encryption, "WEP") ? ENC_WEP : ENC_NONE;
}

bool join(std::string& name, sites& site, std::string& key) {
    if (run_infra_mode(name.data(), site.bssid, authentication_of(site), cipher_of(site),
                       key.data(), site.channel, first_key) != 0)
        return false;
    const bool second_station = isMtkWifi() == 1 && site.channel >= first_5g_channel;
    int lasts = 0;
    for (int second = 0; second < patience; ++second) {
        lasts = does_wifi_associated(second_station ? "apclii0" : "wlan0") == 1 ? lasts + 1 : 0;
        if (lasts > lasting)
            return true;
        sleep(1);
    }
    return false;
}

} // namespace

int main() {
    umask(S_IRWXG | S_IRWXO); // the daemons' files in /tmp hold the key
    std::string name;
    std::string key;
    std::getline(std::cin, name);
    std::getline(std::cin, key);
    std::vector<sites> list;
    run_site_survey(list); // a list that lacks lines is still good to choose from
    // Realtek lists a name of 32 bytes with a blank behind it.
    const auto found = std::find_if(list.begin(), list.end(), [&](const sites& site) {
        return name == std::string(site.ssid, strnlen(site.ssid, longest_name));
    });
    if (found != list.end() && join(name, *found, key)) {
        std::cout << "joined " << name << '\n';
        return 0;
    }
    std::cout << name << (found == list.end() ? " is not in range" : " was not joined") << '\n';
    run_ap_mode_base_db();
    return 1;
}
