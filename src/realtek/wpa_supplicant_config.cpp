// SPDX-License-Identifier: MIT
// The configuration file of wpa_supplicant.

#include <cstdio>
#include <cstring>

#include "base/text.h"
#include "base/unique_file.h"
#include "libwlan/store.h"
#include "libwlan/wext.h"
#include "realtek/daemons.h"

using namespace libwlan;
using namespace libwlan::realtek;

namespace {

constexpr std::size_t raw_key_length = 64; // a passphrase is at most 63 characters long

constexpr const char* head = "ctrl_interface=/var/run/wpa_supplicant\n"
                             "device_type=4-0050F204-3\n"
                             "model_name=%.160s\n"
                             "manufacturer=%.800s\n"
                             "os_version=01020300\n"
                             "config_methods=push_button virtual_push_button\n"
                             "eapol_version=1\n"
                             "network={\n"
                             "\tscan_ssid=1\n"
                             "\tauth_alg=OPEN\n";

bool has_passphrase(auth_from_cam auth) {
    return auth == AUTH_WPAPSK || auth == AUTH_WPA2PSK;
}

/// @return the lines of an authentication mode; null for one that a station cannot have.
const char* key_management_lines(auth_from_cam auth) {
    switch (auth) {
    case AUTH_WPAPSK:
        return "\tkey_mgmt=WPA-PSK\n\tproto=WPA\n";
    case AUTH_WPA2PSK:
        return "\tkey_mgmt=WPA-PSK\n\tproto=RSN\n";
    case AUTH_OPEN:
        return "\tkey_mgmt=NONE\n";
    default:
        return nullptr;
    }
}

// The lines of a name and a key are cut at 127 characters.

void write_quoted_ssid(FILE* file, const char* ssid) {
    char line[128];
    cut_text(line, sizeof line, "ssid=\"%s\"", ssid);
    std::fprintf(file, "\t%s\n", line);
}

void write_psk(FILE* file, const char* key) {
    char line[128];
    cut_text(line, sizeof line, std::strlen(key) == raw_key_length ? "\tpsk=%s" : "\tpsk=\"%s\"",
             key);
    std::fprintf(file, "%s\n", line);
}

} // namespace

int wext::create_wpa_supplicant_config(char* ssid, auth_from_cam auth, enc_from_cam /*enc*/,
                                       char* key) {
    if (!fits_one_line(ssid) || (has_passphrase(auth) && !fits_one_line(key)))
        return -1;
    _system_setting system{};
    if (cam_get_system(&system) != 0)
        return -1;
    const unique_file owner = open_file(WPA_SUPPLICANT_CONFIG, "w+");
    FILE* const file = owner.get();
    if (file == nullptr)
        return -1;

    std::fprintf(file, head, system.model_name, system.manufacturer);
    write_quoted_ssid(file, ssid);
    const char* const lines = key_management_lines(auth);
    if (lines == nullptr) {
        // The file stays unfinished, so that the daemon started next joins nothing.
        std::fputs("Unknow authentication mode of Wireless settings.", stderr);
        return -1;
    }
    std::fputs(lines, file);
    if (has_passphrase(auth))
        write_psk(file, key);
    std::fputs("}\n", file);
    return 0;
}
