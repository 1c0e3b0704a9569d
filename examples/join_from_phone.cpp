// Setting a camera up from a phone: on the camera's own access point the phone hands over a
// network's name and key. The camera looks for that network and joins it; when that fails it is an
// access point again, so that the phone finds it for another try.
//
//     printf '%s\n' "$NAME" "$KEY" | join_from_phone

#include <algorithm>
#include <cstring>
#include <iostream>

#include <unistd.h>

#include <libwlan/libwlan.h>

namespace {

constexpr unsigned char first_key = 1;
constexpr int first_5g_channel = 15;
constexpr int patience = 20; // seconds until an association counts as failed

bool contains(const char* text, const char* word) {
    return std::strstr(text, word) != nullptr;
}

auth_from_cam authentication_of(const sites& site) {
    if (contains(site.authentication, "WPA2-PSK"))
        return AUTH_WPA2PSK;
    return contains(site.authentication, "WPA-PSK") ? AUTH_WPAPSK : AUTH_OPEN;
}

enc_from_cam cipher_of(const sites& site) {
    if (contains(site.encryption, "AES"))
        return ENC_AES;
    if (contains(site.encryption, "TKIP"))
        return ENC_TKIP;
    return contains(site.encryption, "WEP") ? ENC_WEP : ENC_NONE;
}

bool join(sites& site, std::string& key) {
    if (run_infra_mode(site.ssid, site.bssid, authentication_of(site), cipher_of(site), key.data(),
                       site.channel, first_key) != 0)
        return false;
    const bool second_station = isMtkWifi() == 1 && site.channel >= first_5g_channel;
    for (int second = 0; second < patience; ++second) {
        if (does_wifi_associated(second_station ? "apclii0" : "wlan0") == 1)
            return true;
        sleep(1);
    }
    return false;
}

} // namespace

int main() {
    std::string name;
    std::string key;
    std::getline(std::cin, name);
    std::getline(std::cin, key);
    std::vector<sites> list;
    run_site_survey(list); // a list that lacks lines is still good to choose from
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const sites& site) { return name == site.ssid; });
    if (found != list.end() && join(*found, key)) {
        std::cout << "joined " << name << '\n';
        return 0;
    }
    std::cout << name << (found == list.end() ? " is not in range" : " was not joined") << '\n';
    run_ap_mode_base_db();
    return 1;
}
