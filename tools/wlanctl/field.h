// SPDX-License-Identifier: MIT
// Texts in the fields of records.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

/// A field that its text fills has no terminator.
template <std::size_t size>
std::string text_of(const char (&field)[size]) {
    return {field, strnlen(field, size)};
}

/// Cuts what does not fit, and ends with a terminator.
template <std::size_t size>
void fill(char (&field)[size], const std::string& text) {
    std::memset(field, 0, size);
    std::memcpy(field, text.data(), std::min(text.size(), size - 1));
}
