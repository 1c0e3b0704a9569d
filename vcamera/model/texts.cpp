// SPDX-License-Identifier: MIT
// How hostapd and wpa_supplicant write addresses, names and security.

#include "vcamera/model/texts.h"

#include <cstdio>

namespace {

constexpr struct {
    int bit;
    const char* name;
} ciphers[] = {{AIR_AES, "CCMP"}, {AIR_TKIP, "TKIP"}, {AIR_RC4, "WEP-40"}};

/// @param most how many names there may be.
std::string cipher_names(int bits, int most) {
    std::string names;
    for (const auto& cipher : ciphers) {
        if ((bits & cipher.bit) != 0 && most-- > 0)
            names += (names.empty() ? "" : "+") + std::string(cipher.name);
    }
    return names.empty() ? "NONE" : names;
}

std::string manager_name(const access_point& point) {
    return (point.security & AIR_SERVER) != 0 ? "EAP" : "PSK";
}

} // namespace

std::string address_text(const std::uint8_t (&address)[6]) {
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", address[0], address[1],
                  address[2], address[3], address[4], address[5]);
    return text;
}

std::string printable(const std::string& bytes) {
    constexpr struct {
        char byte;
        const char* text;
    } escapes[] = {{'"', "\\\""}, {'\\', "\\\\"}, {'\033', "\\e"},
                   {'\n', "\\n"}, {'\r', "\\r"},  {'\t', "\\t"}};
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        char written[8];
        std::snprintf(written, sizeof written, code >= 32 && code < 127 ? "%c" : "\\x%02x", code);
        std::string escaped = written;
        for (const auto& escape : escapes) {
            if (escape.byte == byte)
                escaped = escape.text;
        }
        text += escaped;
    }
    return text;
}

std::string ssid_bytes(const access_point& point) {
    return {reinterpret_cast<const char*>(point.ssid), point.ssid_length};
}

std::string ssid_text(const access_point& point) {
    return printable(ssid_bytes(point));
}

std::string pairwise_name(const access_point& point) {
    return cipher_names(point.cipher, 1);
}

std::string group_name(const access_point& point) {
    return cipher_names(point.group, 1);
}

std::string security_flags(const access_point& point) {
    const std::string suites =
        "-" + manager_name(point) + "-" + cipher_names(point.cipher & (AIR_AES | AIR_TKIP), 2);
    std::string flags;
    if ((point.security & AIR_WPA) != 0)
        flags += "[WPA" + suites + "]";
    if ((point.security & AIR_WPA2) != 0)
        flags += "[WPA2" + suites + "]";
    if (point.security == AIR_WEP)
        flags += "[WEP]";
    return flags + (point.mode == AIR_ADHOC ? "[IBSS]" : "[ESS]");
}

std::string key_management_name(const access_point& point) {
    if ((point.security & (AIR_WPA | AIR_WPA2)) == 0)
        return "NONE";
    return ((point.security & AIR_WPA2) != 0 ? "WPA2-" : "WPA-") + manager_name(point);
}
