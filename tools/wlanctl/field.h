// SPDX-License-Identifier: MIT
// Texts in the fields of records.

#pragma once

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <string>

/// A field that its text fills has no terminator.
template <std::size_t size>
std::string text_of(const char (&field)[size]) {
    return {field, strnlen(field, size)};
}

/// A hardware address as `ip` prints it, in whichever case the driver does.
inline std::string address_text(std::string address) {
    std::transform(address.begin(), address.end(), address.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return address;
}

/// Cuts what does not fit, and ends with a terminator.
template <std::size_t size>
void fill(char (&field)[size], const std::string& text) {
    std::memset(field, 0, size);
    std::memcpy(field, text.data(), std::min(text.size(), size - 1));
}
