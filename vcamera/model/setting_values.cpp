// SPDX-License-Identifier: MIT
// The forms of values in configuration files.

#include "vcamera/model/setting_values.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace {

bool is_digit(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

void replace(std::string& text, std::string_view mark, const std::string& with) {
    const std::size_t place = text.find(mark);
    if (place != std::string::npos)
        text.replace(place, mark.size(), with);
}

/// What stands between the first quote, which is at `start`, and the last one, which ends the text.
std::optional<std::string> quoted(const std::string& value, std::size_t start) {
    const std::size_t end = value.size() - 1;
    if (end <= start || value[end] != '"')
        return std::nullopt;
    return value.substr(start + 1, end - start - 1);
}

} // namespace

std::string fill_in(std::string text, const setting_rule& rule, const std::string& value) {
    replace(text, "{key}", rule.key);
    replace(text, "{number}", std::to_string(std::atoi(value.c_str())));
    replace(text, "{length}", std::to_string(value.size()));
    replace(text, "{value}", value);
    return text;
}

std::vector<std::string> split_words(std::string_view text) {
    std::vector<std::string> words;
    std::size_t start = 0;
    while ((start = text.find_first_not_of(" \t", start)) != std::string_view::npos) {
        const std::size_t end = std::min(text.find_first_of(" \t", start), text.size());
        words.emplace_back(text.substr(start, end - start));
        start = end;
    }
    return words;
}

bool is_among(std::string_view words, std::string_view word) {
    constexpr std::string_view blanks = " \t";
    const auto is_edge = [&](std::size_t place) {
        return place >= words.size() || blanks.find(words[place]) != std::string_view::npos;
    };
    for (std::size_t place = 0; !word.empty();) {
        place = words.find(word, place);
        if (place == std::string_view::npos)
            break;
        if ((place == 0 || is_edge(place - 1)) && is_edge(place + word.size()))
            return word.find_first_of(blanks) == std::string_view::npos;
        ++place;
    }
    return false;
}

bool begins_with_octets(const std::string& text, std::size_t count, std::size_t place) {
    if (text.size() < place + 2 * count)
        return false;
    for (std::size_t i = place; i < place + 2 * count; ++i) {
        if (!is_digit(text[i]))
            return false;
    }
    return true;
}

bool is_device_type(const std::string& text) {
    const std::size_t dash = text.find('-');
    return dash != std::string::npos && begins_with_octets(text, 4, dash + 1) &&
           text.find('-', dash + 1) != std::string::npos;
}

bool is_uuid(const std::string& text) {
    constexpr std::size_t octets[] = {4, 2, 2, 2, 6};
    std::size_t place = 0;
    for (const std::size_t count : octets) {
        if (place != 0 && text[place++] != '-')
            return false;
        if (!begins_with_octets(text, count, place))
            return false;
        place += 2 * count;
    }
    return true;
}

bool is_hardware_address(const std::string& text) {
    for (std::size_t i = 0; i < 6; ++i) {
        if (!begins_with_octets(text, 1, 3 * i) || (i < 5 && text[3 * i + 2] != ':'))
            return false;
    }
    return true;
}

std::optional<std::string> read_text_value(const std::string& value) {
    if (!value.empty() && value[0] == '"')
        return quoted(value, 0);
    if (value.rfind("P\"", 0) == 0)
        return quoted(value, 1);
    if (value.size() % 2 != 0 || !begins_with_octets(value, value.size() / 2))
        return std::nullopt;
    std::string text;
    for (std::size_t i = 0; i < value.size(); i += 2)
        text += static_cast<char>(std::stoi(value.substr(i, 2), nullptr, 16));
    return text;
}

refusal read_ciphers(const std::string& value, unsigned& bits) {
    constexpr struct {
        std::string_view name;
        unsigned bit;
    } ciphers[] = {{"NONE", cipher_none},
                   {"WEP40", cipher_wep40},
                   {"WEP104", cipher_wep104},
                   {"TKIP", cipher_tkip},
                   {"CCMP", cipher_ccmp},
                   {"AES-128-CMAC", 1U << 5U},
                   {"GCMP", cipher_gcmp},
                   {"GCMP-256", cipher_gcmp_256},
                   {"CCMP-256", cipher_ccmp_256},
                   {"BIP-GMAC-128", 1U << 11U},
                   {"BIP-GMAC-256", 1U << 12U},
                   {"BIP-CMAC-256", 1U << 13U},
                   {"GTK_NOT_USED", cipher_gtk_not_used}};
    bits = 0;
    for (const std::string& word : split_words(value)) {
        const auto* const found =
            std::find_if(std::begin(ciphers), std::end(ciphers),
                         [&](const auto& cipher) { return cipher.name == word; });
        if (found == std::end(ciphers))
            return "invalid cipher '" + value + "'.";
        bits |= found->bit;
    }
    return bits == 0 ? refusal("no cipher values configured.") : taken;
}

refusal in_range(const setting_rule& rule, const std::string& value) {
    const int number = std::atoi(value.c_str());
    return number < rule.low || number > rule.high ? refusal(fill_in(rule.message, rule, value))
                                                   : taken;
}

refusal of_length(const setting_rule& rule, const std::string& value) {
    const auto length = static_cast<long>(value.size());
    return length < rule.low || length > rule.high ? refusal(fill_in(rule.message, rule, value))
                                                   : taken;
}

refusal one_of(const setting_rule& rule, const std::string& value) {
    return is_among(rule.words, value) ? taken : refusal(fill_in(rule.message, rule, value));
}

refusal device_type(const setting_rule& /*rule*/, const std::string& value) {
    return is_device_type(value) ? taken : refusal("");
}

refusal os_version(const setting_rule& /*rule*/, const std::string& value) {
    return begins_with_octets(value, 4) ? taken : refusal("invalid os_version");
}

refusal uuid(const setting_rule& /*rule*/, const std::string& value) {
    return is_uuid(value) ? taken : refusal("invalid UUID");
}
