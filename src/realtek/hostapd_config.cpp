// SPDX-License-Identifier: MIT
// The configuration file of hostapd.

#include <cstdio>

#include "base/text.h"
#include "base/unique_file.h"
#include "libwlan/store.h"
#include "libwlan/wext.h"
#include "realtek/daemons.h"

using namespace libwlan;
using namespace libwlan::realtek;

namespace {

struct security {
    auth_from_cam auth;
    const char* wpa; // value of "wpa"
    // The mixed mode needs no line of its own for RSN: hostapd takes WPA's.
    const char* pairwise_key;
};

constexpr security securities[] = {
    {AUTH_WPAPSK, "1", "wpa_pairwise"},
    {AUTH_WPA2PSK, "2", "rsn_pairwise"},
    {AUTH_MIXED_PSK, "3", "wpa_pairwise"},
};

constexpr const char* tail = "driver=rtl871xdrv\n"
                             "beacon_int=100\n"
                             "hw_mode=g\n"
                             "ieee80211n=1\n"
                             "wme_enabled=1\n"
                             "ht_capab=[SHORT-GI-20][SHORT-GI-40][HT40+]\n"
                             "max_num_sta=8\n";

/// How `auth` is secured; null for every mode that gives an open network.
const security* find_security(auth_from_cam auth) {
    for (const security& security : securities) {
        if (security.auth == auth)
            return &security;
    }
    return nullptr;
}

const char* pairwise_ciphers(enc_from_cam enc) {
    switch (enc) {
    case ENC_TKIP:
        return "TKIP";
    case ENC_AES:
        return "CCMP";
    default:
        return "TKIP CCMP";
    }
}

// The lines of a name and a key are cut at 127 characters; a cut name loses its line feed, too.

void write_ssid(FILE* file, const char* ssid) {
    char line[128];
    cut_text(line, sizeof line, "ssid=%s\n", ssid);
    std::fputs(line, file);
}

void write_security(FILE* file, const security& security, enc_from_cam enc, const char* key) {
    char line[128];
    cut_text(line, sizeof line, "wpa_passphrase=%s", key);
    std::fprintf(file, "wpa=%s\n", security.wpa);
    std::fprintf(file, "%s=%s\n", security.pairwise_key, pairwise_ciphers(enc));
    std::fprintf(file, "%s\n", line);
    std::fputs("wpa_key_mgmt=WPA-PSK\nwpa_group_rekey=86400\n", file);
}

} // namespace

int wext::create_hostapd_config(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    const security* security = find_security(auth);
    if (!fits_one_line(ssid) || (security != nullptr && !fits_one_line(key)))
        return -1;
    _system_setting system{}; // nothing of it is written: it tells whether the store answers
    if (cam_get_system(&system) != 0)
        return -1;
    const unique_file owner = open_file(HOSTAPD_CONFIG, "w+");
    FILE* const file = owner.get();
    if (file == nullptr)
        return -1;

    std::fputs("ctrl_interface=/var/run/hostapd\ninterface=" REALTEK_ACCESS_POINT "\n", file);
    write_ssid(file, ssid);
    int channel = 1;
    std::fprintf(file, "channel=%d\n", get_best_channel(&channel));
    std::fputs("wps_state=0\nauth_algs=1\n", file);
    if (security != nullptr)
        write_security(file, *security, enc, key);
    std::fputs(tail, file);
    return 0;
}
