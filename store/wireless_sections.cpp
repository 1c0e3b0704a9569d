// SPDX-License-Identifier: MIT
// The sections of the wireless settings.

#include "store/wireless_sections.h"

namespace {

using store::field;
using store::form;
using store::word;
using record = _wireless_setting;

constexpr std::initializer_list<word> no_yes = {{0, "no"}, {1, "yes"}};

constexpr std::initializer_list<word> auth_words = {
    {AUTH_OPEN, "open"}, {AUTH_SHARED, "shared"},   {AUTH_WPAPSK, "wpapsk"},
    {AUTH_WPA2, "wpa2"}, {AUTH_WPA2PSK, "wpa2psk"}, {AUTH_MIXED_PSK, "mixed"},
};

constexpr std::initializer_list<word> enc_words = {
    {ENC_NONE, "none"}, {ENC_WEP, "wep"},          {ENC_TKIP, "tkip"},
    {ENC_AES, "aes"},   {ENC_TKIP_AES, "tkipaes"},
};

constexpr std::initializer_list<word> join_words = {{APCLI_BY_SSID, "ssid"},
                                                    {APCLI_BY_BSSID, "bssid"}};

constexpr std::size_t ssid_bytes = 32; // on the air; the record has room for 63

// clang-format off
constexpr std::initializer_list<field> access_point_fields = {
    // key      form         offset                             most        default   words
    {"ssid",    form::text,  offsetof(record, ap_ssid),         ssid_bytes, nullptr,  {}},
    {"key",     form::text,  offsetof(record, ap_key),          255,        "",       {}},
    {"auth",    form::byte,  offsetof(record, ap_auth),         0,          nullptr,  auth_words},
    {"enc",     form::byte,  offsetof(record, ap_enc),          0,          nullptr,  enc_words},
};

constexpr std::initializer_list<field> client_fields = {
    // key        form          offset                               most        default  words
    {"enabled",   form::byte,   offsetof(record, client_enabled),    0,          "no",    no_yes},
    {"ssid",      form::text,   offsetof(record, client_ssid),       ssid_bytes, nullptr, {}},
    {"bssid",     form::bssid,  offsetof(record, client_bssid),      31,         "",      {}},
    {"key",       form::text,   offsetof(record, client_key),        255,        "",      {}},
    {"auth",      form::byte,   offsetof(record, client_auth),       0,          nullptr, auth_words},
    {"enc",       form::byte,   offsetof(record, client_enc),        0,          nullptr, enc_words},
    {"join",      form::byte,   offsetof(record, client_apcli_mode), 0,          "ssid",  join_words},
    {"channel",   form::number, offsetof(record, client_channel),    0,          "0",     {}},
    {"key_index", form::byte,   offsetof(record, client_key_index),  0,          "1",     {}},
};
// clang-format on

constexpr store::section access_point_section = {"access_point", access_point_fields};

} // namespace

const store::section store::client_section = {"client", client_fields};

_wireless_setting store::read_wireless(const config_file& file, need access_point, need client) {
    _wireless_setting record = {};
    read_section(file, access_point_section, access_point, &record);
    read_section(file, client_section, client, &record);
    return record;
}
