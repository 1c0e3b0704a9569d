#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "libwlan/link_status.h"
#include "libwlan/store.h"
#include "libwlan/wlan.h"
#include "mtk/interfaces.h"
#include "mtk/send_command.h"

namespace {

// By authentication mode. Modes that the driver has no word for fall back to the nearest that it
// has.
constexpr char auth_words[][14] = {
    "OPEN",          // AUTH_OPEN
    "WEPAUTO",       // AUTH_SHARED
    "WPAPSK",        // AUTH_WPAPSK
    "WPAPSK",        // AUTH_WPA2
    "WPAPSK",        // AUTH_RESERVED_4
    "WPA2PSK",       // AUTH_WPA2PSK
    "WEPAUTO",       // AUTH_RESERVED_6
    "WPAPSKWPA2PSK", // AUTH_MIXED_PSK
};

// By cipher.
constexpr char enc_words[][8] = {
    "NONE",    // ENC_NONE
    "WEP",     // ENC_WEP
    "TKIP",    // ENC_TKIP
    "AES",     // ENC_AES
    "TKIPAES", // ENC_TKIP_AES
};

/// Sends one command with the current prefix in front of its key.
__attribute__((format(printf, 2, 3))) int send_prefixed(wlan& radio, const char* format, ...) {
    char text[sizeof radio.command];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return send_command(radio, "%.64s%s", radio.prefix, text);
}

int send_wep(wlan& radio, const char* key, unsigned char key_index) {
    int result = send_prefixed(radio, "EncrypType=%s", enc_words[ENC_WEP]);
    result |= send_prefixed(radio, "DefaultKeyID=%d", key_index);
    result |= send_prefixed(radio, "Key%d=%s", key_index, key);
    return result;
}

int send_wpa(wlan& radio, enc_from_cam enc, const char* key, char* ssid) {
    int result = send_prefixed(radio, "EncrypType=%s", enc_words[enc]);
    // The driver derives the key from the passphrase and the SSID that it holds by then.
    result |= radio.set_ssid(ssid);
    if (enc == ENC_TKIP_AES)
        result |= send_command(
            radio, "WpaMixPairCipher=WPA_TKIP_WPA2_AES"); // no prefix, also on the AP-client
    result |= send_prefixed(radio, "WPAPSK=%s", key);
    return result;
}

} // namespace

int wlan::set_auth(auth_from_cam auth) {
    if (auth >= std::size(auth_words))
        return -1;
    return send_prefixed(*this, "AuthMode=%s", auth_words[auth]);
}

int wlan::set_enc_and_key(enc_from_cam enc, char* key, char* ssid, unsigned char key_index) {
    if (enc >= std::size(enc_words))
        return -1;
    if (enc == ENC_NONE)
        return send_prefixed(*this, "EncrypType=%s", enc_words[ENC_NONE]);
    if (key == nullptr)
        return -1;
    if (enc == ENC_WEP)
        return send_wep(*this, key, key_index);
    if (ssid == nullptr)
        return -1;
    return send_wpa(*this, enc, key, ssid);
}

// The driver spells these two keys differently with and without a prefix.

int wlan::set_ssid(char* ssid) {
    if (ssid == nullptr)
        return -1;
    return send_prefixed(*this, prefix[0] != '\0' ? "Ssid=%s" : "SSID=%s", ssid);
}

int wlan::set_bssid(char* bssid) {
    if (bssid == nullptr)
        return -1;
    return send_prefixed(*this, prefix[0] != '\0' ? "Bssid=%s" : "BSSID=%s", bssid);
}

int wlan::set_channel(int channel, set_apcli_from_cam mode) {
    if (mode == APCLI_BY_BSSID)
        return send_command(*this, "Channel=%d", channel);
    return send_command(*this, "ApCliAutoConnect=1");
}

int wlan::enable_apcli(bool on) {
    return send_prefixed(*this, "Enable=%d", on ? 1 : 0);
}

int wlan::set_radio(bool on) {
    return send_command(*this, "RadioOn=%d", on ? 1 : 0);
}

int wlan::set_channel_algorithm(int algorithm) {
    return send_command(*this, "AutoChannelSel=%d", algorithm);
}

int wlan::set_region() {
    PIB product;
    product.init();
    const int region = product.getRegion();
    if (std::strncmp(ifname, station_5g_interface, sizeof ifname) == 0)
        return send_command(*this, "CountryRegionABand=%d", product.getRegionABand());
    return send_command(*this, "CountryRegion=%d", region);
}

int wlan::set_infra_mode() {
    set_region(); // a refused region does not keep the camera from joining
    return 0;
}

int wlan::set_ap_mode() {
    set_region();
    return set_radio(true);
}

int wlan::may_enable_device(char* /*name*/) {
    return 0;
}

int wlan::dis_8021x() {
    return send_command(*this, "IEEE8021X=0");
}

int wlan::active_scan(char* value) {
    if (value == nullptr)
        return -1;
    return send_command(*this, "SiteSurvey=%s", value);
}

int wlan::set_current_channel() {
    set_interface(station_2g_interface);
    const int channel = get_wifi_channel(station_2g_interface);
    return channel > 0 ? send_command(*this, "Channel=%d", channel) : 0;
}
