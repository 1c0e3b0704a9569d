#include "mtk/survey_table.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "util/text_field.h"

namespace {

struct column {
    std::size_t position;
    std::size_t length;
};

constexpr std::string_view blanks = " \t\n";

// Version 1.
constexpr column channel_v1{0, 8};
constexpr column rssi_v1{8, 8};
constexpr column ssid_v1{16, 36};
constexpr column bssid_v1{52, 20};
constexpr column encryption_v1{72, 12};
constexpr column authentication_v1{84, 20};
constexpr column network_type_v1{104, 12};

// Version 2. Security and signal share column 82: a digit of the signal does not disturb the search
// for words in the security text.
constexpr column channel_v2{0, 4};
constexpr column ssid_v2{4, 34};
constexpr column bssid_v2{39, 20};
constexpr column security_v2{59, 24};
constexpr column signal_v2{82, 9};
constexpr column network_type_v2{106, 2};

// Networks that a camera cannot join: they authenticate through a server, or in a way unknown even
// to the driver.
constexpr std::string_view server_authentications[] = {"WPA", "WPA2", "WPA1WPA2", "UNKNOW"};

struct word {
    std::string_view contained;
    const char* text;
};

// The first word that the security text contains wins.
constexpr word encryption_words[] = {
    {"TKIPAES", "TKIP/AES"},
    {"AES", "AES"},
    {"TKIP", "TKIP"},
    {"WEP", "WEP"},
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
    for (const word& word : words)
        if (text.find(word.contained) != std::string_view::npos)
            return word.text;
    return nullptr;
}

/// A line's column; none when the line ends before it.
std::optional<std::string_view> cut(std::string_view line, column column) {
    if (column.position > line.size())
        return std::nullopt;
    return line.substr(column.position, column.length);
}

/// The number that a column begins with, after blanks, and 0 when it begins with none; nothing when
/// the line ends before the column.
std::optional<int> number(std::string_view line, column column) {
    const std::optional<std::string_view> text = cut(line, column);
    if (!text)
        return std::nullopt;
    char digits[16]{}; // no column of numbers is wider
    std::memcpy(digits, text->data(), std::min(text->size(), sizeof digits - 1));
    return static_cast<int>(std::strtol(digits, nullptr, 10));
}

template <std::size_t size>
bool fill(char (&field)[size], std::string_view text) {
    if (text.empty())
        return false;
    const std::size_t length = std::min(text.size(), size);
    std::memcpy(field, text.data(), length);
    return true;
}

template <std::size_t size>
bool fill_from(char (&field)[size], std::optional<std::string_view> column) {
    return column && fill(field, trimmed(*column));
}

template <std::size_t size>
bool fill_name(char (&field)[size], std::optional<std::string_view> column) {
    if (!column)
        return false;
    const std::optional<std::string_view> name = unquoted(*column);
    return name && fill(field, *name);
}

bool needs_server(std::string_view authentication) {
    return std::find(std::begin(server_authentications), std::end(server_authentications),
                     authentication) != std::end(server_authentications);
}

/// Splits the driver's combined security text.
bool fill_security(sites& site, std::string_view security) {
    if (security.empty())
        return false;
    const char* encryption = find_word(encryption_words, security);
    const char* authentication = find_word(authentication_words, security);
    fill_field(site.encryption, encryption != nullptr ? encryption : "NONE");
    if (authentication == nullptr && std::strcmp(site.encryption, "WEP") == 0)
        authentication = "WEPAUTO";
    if (authentication == nullptr)
        return false;
    fill_field(site.authentication, authentication);
    return true;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    const std::size_t last = text.find_last_not_of(blanks);
    if (last == std::string_view::npos)
        return {};
    const std::size_t first = text.find_first_not_of(blanks);
    return text.substr(first, last - first + 1);
}

std::optional<std::string_view> unquoted(std::string_view text) {
    if (text.empty())
        return std::nullopt;
    return text.substr(1,
                       text.rfind('"') - 1); // without a closing quote the length covers the rest
}

std::optional<std::string_view> take_line(std::string_view& text) {
    const std::size_t start = text.find_first_not_of('\n');
    if (start == std::string_view::npos)
        return std::nullopt;
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const std::string_view line = text.substr(start, end - start);
    text.remove_prefix(end);
    return line;
}

bool is_version_2_header(std::string_view header) {
    return header.size() >= 8 && header.substr(4, 4) == "SSID";
}

std::optional<sites> read_row(std::string_view line) {
    line = trimmed(line);
    if (line.empty())
        return std::nullopt;
    sites site{};
    site.channel = number(line, channel_v1).value_or(0);
    site.rssi = number(line, rssi_v1).value_or(0);
    if (site.channel < 1 || site.rssi >= 0)
        return std::nullopt;
    const bool whole = fill_name(site.ssid, cut(line, ssid_v1)) &&
                       fill_from(site.bssid, cut(line, bssid_v1)) &&
                       fill_from(site.encryption, cut(line, encryption_v1)) &&
                       fill_from(site.authentication, cut(line, authentication_v1)) &&
                       fill_from(site.network_type, cut(line, network_type_v1));
    if (!whole || needs_server(trimmed(*cut(line, authentication_v1))))
        return std::nullopt;
    return site;
}

std::optional<sites> read_row_v2(std::string_view line,
                                 std::optional<std::string_view>& foreign_type) {
    line = trimmed(line);
    if (line.empty())
        return std::nullopt;
    sites site{};
    site.channel = number(line, channel_v2).value_or(0);
    site.signal = number(line, signal_v2).value_or(-1);
    if (site.channel < 1 || site.signal < 0)
        return std::nullopt;
    const auto security = cut(line, security_v2);
    const bool whole = fill_name(site.ssid, cut(line, ssid_v2)) &&
                       fill_from(site.bssid, cut(line, bssid_v2)) && security &&
                       fill_security(site, trimmed(*security));
    const auto type = cut(line, network_type_v2);
    if (!whole || !type)
        return std::nullopt;
    if (*type != "In") {
        foreign_type = type;
        return std::nullopt;
    }
    fill_field(site.network_type, "Infra");
    return site;
}
