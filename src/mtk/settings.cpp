// SPDX-License-Identifier: MIT
// Settings of a MediaTek/Ralink radio, each one Key=Value command or a few.

#include "libwlan/link_status.h"
#include "libwlan/wlan.h"
#include "mtk/driver.h"
#include "mtk/interfaces.h"

using namespace libwlan;
using namespace libwlan::mtk;

namespace {

struct auth_word {
    auth_from_cam auth;
    char word[14];
};

// Modes that the driver has no word for fall back to the nearest that it has.
constexpr auth_word auth_words[] = {
    {AUTH_OPEN, "OPEN"},          {AUTH_SHARED, "WEPAUTO"},          {AUTH_WPAPSK, "WPAPSK"},
    {AUTH_WPA2, "WPAPSK"},        {AUTH_RESERVED_4, "WPAPSK"},       {AUTH_WPA2PSK, "WPA2PSK"},
    {AUTH_RESERVED_6, "WEPAUTO"}, {AUTH_MIXED_PSK, "WPAPSKWPA2PSK"},
};

struct enc_word {
    enc_from_cam enc;
    char word[8];
};

constexpr enc_word enc_words[] = {
    {ENC_NONE, "NONE"}, {ENC_WEP, "WEP"},          {ENC_TKIP, "TKIP"},
    {ENC_AES, "AES"},   {ENC_TKIP_AES, "TKIPAES"},
};

const char* word_of(auth_from_cam auth) {
    for (const auth_word& known : auth_words) {
        if (known.auth == auth)
            return known.word;
    }
    return nullptr;
}

const char* word_of(enc_from_cam enc) {
    for (const enc_word& known : enc_words) {
        if (known.enc == enc)
            return known.word;
    }
    return nullptr;
}

int send_wep(wlan& radio, const char* key, unsigned char key_index) {
    int result = send_command(radio, radio.prefix, "DefaultKeyID=%d", key_index);
    result |= send_command(radio, radio.prefix, "Key%d=%s", key_index, key);
    return result;
}

int send_wpa(wlan& radio, enc_from_cam enc, const char* key, char* ssid) {
    // The driver derives the key from the passphrase and the SSID that it holds by then.
    int result = radio.set_ssid(ssid);
    if (enc == ENC_TKIP_AES) // no prefix, also on the AP-client
        result |= send_command(radio, no_prefix, "WpaMixPairCipher=WPA_TKIP_WPA2_AES");
    result |= send_command(radio, radio.prefix, "WPAPSK=%s", key);
    return result;
}

} // namespace

int wlan::set_auth(auth_from_cam auth) {
    const char* const word = word_of(auth);
    return word != nullptr ? send_command(*this, prefix, "AuthMode=%s", word) : -1;
}

int wlan::set_enc_and_key(enc_from_cam enc, char* key, char* ssid, unsigned char key_index) {
    const char* const word = word_of(enc);
    const bool is_wpa = enc != ENC_NONE && enc != ENC_WEP;
    if (word == nullptr || (enc != ENC_NONE && key == nullptr) || (is_wpa && ssid == nullptr))
        return -1;
    int result = send_command(*this, prefix, "EncrypType=%s", word);
    if (enc == ENC_WEP)
        result |= send_wep(*this, key, key_index);
    if (is_wpa)
        result |= send_wpa(*this, enc, key, ssid);
    return result;
}

// The driver spells these two keys differently with and without a prefix.

int wlan::set_ssid(char* ssid) {
    if (ssid == nullptr)
        return -1;
    return send_command(*this, prefix, prefix[0] != '\0' ? "Ssid=%s" : "SSID=%s", ssid);
}

int wlan::set_bssid(char* bssid) {
    if (bssid == nullptr)
        return -1;
    return send_command(*this, prefix, prefix[0] != '\0' ? "Bssid=%s" : "BSSID=%s", bssid);
}

int wlan::set_channel(int channel, set_apcli_from_cam mode) {
    if (mode == APCLI_BY_BSSID)
        return send_command(*this, no_prefix, "Channel=%d", channel);
    return send_command(*this, no_prefix, "ApCliAutoConnect=1");
}

int wlan::enable_apcli(bool on) {
    return send_command(*this, prefix, "Enable=%d", on ? 1 : 0);
}

int wlan::set_radio(bool on) {
    return send_command(*this, no_prefix, "RadioOn=%d", on ? 1 : 0);
}

int wlan::set_channel_algorithm(int algorithm) {
    return send_command(*this, no_prefix, "AutoChannelSel=%d", algorithm);
}

int wlan::may_enable_device(char* /*name*/) {
    return 0;
}

int wlan::dis_8021x() {
    return send_command(*this, no_prefix, "IEEE8021X=0");
}

int wlan::active_scan(char* value) {
    if (value == nullptr)
        return -1;
    return send_command(*this, no_prefix, "SiteSurvey=%s", value);
}

int wlan::set_current_channel() {
    set_interface(station_2g_interface);
    const int channel = get_wifi_channel(station_2g_interface);
    return channel > 0 ? send_command(*this, no_prefix, "Channel=%d", channel) : 0;
}
