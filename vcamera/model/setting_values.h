// SPDX-License-Identifier: MIT
// What hostapd and wpa_supplicant share in reading their configuration files: the forms of values.
// Both are lenient in the same places, and so is this: what follows a value of fixed length, or a
// number that the C library's atoi() reads, is not looked at.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a daemon says about its file, line by line, and how many errors it counts in it.
struct file_report {
    std::vector<std::string> messages;
    int errors = 0;
};

/// What is wrong with a value, in the daemon's words, which may be none; nothing when it is taken.
using refusal = std::optional<std::string>;
constexpr auto taken = std::nullopt;

/// A key and the values that it takes.
struct setting_rule {
    const char* key;
    refusal (*judge)(const setting_rule& rule, const std::string& value);
    long low = 0; // of a number or of a text's length
    long high = 0;
    const char* message = ""; // with {key}, {value}, {number} or {length} in it
    const char* words = "";   // that the value may be
};

/// @return the text with its {key}, {value}, {number} and {length} filled in.
std::string fill_in(std::string text, const setting_rule& rule, const std::string& value);

/// @return the rule for a key; null when the table has none.
template <std::size_t size>
const setting_rule* find_rule(const setting_rule (&rules)[size], const std::string& key) {
    for (const setting_rule& rule : rules) {
        if (key == rule.key)
            return &rule;
    }
    return nullptr;
}

/// @return whether a word stands in a text of words with blanks between them.
bool is_among(std::string_view words, std::string_view word);

std::vector<std::string> split_words(std::string_view text);

/// @return whether so many octets of two hexadecimal digits each begin the text at this place.
bool begins_with_octets(const std::string& text, std::size_t count, std::size_t place = 0);

bool is_device_type(const std::string& text); // "6-0050F204-1"
bool is_uuid(const std::string& text);
bool is_hardware_address(const std::string& text);

/// A text in quotes, one in P"quotes", whose escapes stay as they are, or one of hexadecimal
/// digits.
std::optional<std::string> read_text_value(const std::string& value);

/// The ciphers of a list, as bits.
enum cipher_bit : unsigned {
    cipher_none = 1U,
    cipher_wep40 = 1U << 1U,
    cipher_wep104 = 1U << 2U,
    cipher_tkip = 1U << 3U,
    cipher_ccmp = 1U << 4U,
    cipher_gcmp = 1U << 6U,
    cipher_gcmp_256 = 1U << 8U,
    cipher_ccmp_256 = 1U << 9U,
    cipher_gtk_not_used = 1U << 14U,
};

/// @return what is wrong with a list of ciphers; `bits` is what it holds otherwise.
refusal read_ciphers(const std::string& value, unsigned& bits);

// Judges for the tables.

refusal in_range(const setting_rule& rule, const std::string& value); // as atoi() reads it
refusal of_length(const setting_rule& rule, const std::string& value);
refusal one_of(const setting_rule& rule, const std::string& value);
refusal device_type(const setting_rule& rule, const std::string& value);
refusal os_version(const setting_rule& rule, const std::string& value);
refusal uuid(const setting_rule& rule, const std::string& value);
