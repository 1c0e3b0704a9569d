// SPDX-License-Identifier: MIT
// The driver's survey table.

#include "mtk/survey_table.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/text.h"

namespace libwlan::mtk {

namespace {

struct column {
    unsigned char position;
    unsigned char length;
};

/// A text that goes into the record as it stands.
struct text_column {
    column from;
    unsigned char field; // offset in the record; no column is wider than its field
};

// Version 1.
constexpr column channel_v1{0, 8};
constexpr column rssi_v1{8, 8};
constexpr column ssid_v1{16, 36};
constexpr text_column texts_v1[] = {
    {{52, 20}, offsetof(sites, bssid)},
    {{72, 12}, offsetof(sites, encryption)},
    {{84, 20}, offsetof(sites, authentication)},
    {{104, 12}, offsetof(sites, network_type)},
};

// Version 2. Security and signal share column 82: a digit of the signal does not disturb the search
// for words in the security text.
constexpr column channel_v2{0, 4};
constexpr column ssid_v2{4, 34};
constexpr text_column bssid_v2{{39, 20}, offsetof(sites, bssid)};
constexpr column security_v2{59, 24};
constexpr column signal_v2{82, 9};
constexpr column network_type_v2{106, 2};

// Networks that a camera cannot join: they authenticate through a server, or in a way unknown even
// to the driver.
constexpr char server_authentications[][9] = {"WPA", "WPA2", "WPA1WPA2", "UNKNOW"};

struct word {
    char contained[15];
    char text[17];
};

// The first word that the security text contains wins. Every text contains the empty one.
constexpr word encryption_words[] = {
    {"TKIPAES", "TKIP/AES"}, {"AES", "AES"}, {"TKIP", "TKIP"}, {"WEP", "WEP"}, {"", "NONE"},
};

constexpr word authentication_words[] = {
    {"WPA1PSKWPA2PSK", "WPA-PSK/WPA2-PSK"},
    {"WPA2PSK", "WPA2-PSK"},
    {"WPA1PSK", "WPA-PSK"},
    {"WPAPSK", "WPA-PSK"},
    {"NONE", "OPEN"},
};

template <std::size_t size>
const char* find_word(const word (&words)[size], std::string_view text) {
    for (const word& word : words) {
        if (text.find(word.contained) != std::string_view::npos)
            return word.text;
    }
    return nullptr;
}

/// The first `length` characters, or a shorter text. Unlike substr() it needs no exceptions.
std::string_view first(std::string_view text, std::size_t length) {
    return {text.data(), std::min(length, text.size())};
}

/// A line's column, or what the line has of it.
std::string_view cut(std::string_view line, const column& column) {
    line.remove_prefix(std::min<std::size_t>(column.position, line.size()));
    return first(line, column.length);
}

void copy_text(char* field, std::string_view text) {
    std::memcpy(field, text.data(), text.size());
}

/// The number that a column begins with, after blanks, and 0 when it begins with none.
int number(std::string_view line, const column& column) {
    char digits[16]{}; // no column of numbers is wider
    copy_text(digits, cut(line, column));
    return static_cast<int>(std::strtol(digits, nullptr, 10));
}

bool fill_text(sites& site, std::string_view line, const text_column& column) {
    const std::string_view text = trimmed(cut(line, column.from));
    copy_text(reinterpret_cast<char*>(&site) + column.field, text);
    return !text.empty();
}

/// What stands between the first character, taken to be the opening quote, and the last quote.
bool fill_name(sites& site, std::string_view quoted) {
    if (quoted.empty())
        return false;
    // Without a closing quote the length covers the rest.
    const std::size_t length = quoted.rfind('"') - 1;
    quoted.remove_prefix(1);
    const std::string_view name = first(quoted, length);
    copy_text(site.ssid, name);
    return !name.empty();
}

bool needs_server(const sites& site) {
    return std::any_of(std::begin(server_authentications), std::end(server_authentications),
                       [&](const char* word) {
                           return std::strncmp(site.authentication, word,
                                               sizeof site.authentication) == 0;
                       });
}

/// Splits the driver's combined security text.
bool fill_security(sites& site, std::string_view text) {
    fill_field(site.encryption, find_word(encryption_words, text));
    const char* authentication = find_word(authentication_words, text);
    if (authentication == nullptr && std::strcmp(site.encryption, "WEP") == 0)
        authentication = "WEPAUTO";
    if (authentication == nullptr)
        return false;
    fill_field(site.authentication, authentication);
    return true;
}

bool is_blank(char character) {
    return character == ' ' || character == '\t' || character == '\n';
}

} // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::optional<std::string_view> take_line(std::string_view& text) {
    while (!text.empty() && text.front() == '\n')
        text.remove_prefix(1);
    if (text.empty())
        return std::nullopt;
    const std::string_view line = first(text, text.find('\n'));
    text.remove_prefix(line.size());
    return line;
}

bool is_version_2_header(std::string_view header) {
    return header.size() >= 8 && std::memcmp(header.data() + 4, "SSID", 4) == 0;
}

bool read_row(std::string_view line, sites& site) {
    site.channel = number(line, channel_v1);
    site.rssi = number(line, rssi_v1);
    if (site.channel < 1 || site.rssi >= 0 || !fill_name(site, cut(line, ssid_v1)))
        return false;
    for (const text_column& column : texts_v1) {
        if (!fill_text(site, line, column))
            return false;
    }
    return !needs_server(site);
}

bool read_row_v2(std::string_view line, sites& site) {
    if (line.size() < network_type_v2.position)
        return false;
    site.channel = number(line, channel_v2);
    site.signal = number(line, signal_v2);
    if (site.channel < 1 || site.signal < 0)
        return false;
    copy_text(site.network_type, cut(line, network_type_v2));
    return fill_name(site, cut(line, ssid_v2)) && fill_text(site, line, bssid_v2) &&
           fill_security(site, cut(line, security_v2));
}

} // namespace libwlan::mtk
