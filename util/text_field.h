#pragma once

#include <cstddef>
#include <cstring>

/// Fills a fixed-size text field from `text` and pads it with NULs. A text that fills the field
/// leaves no terminator: drivers and stores take such fields by their size.
template <std::size_t size>
void fill_field(char (&field)[size], const char* text) {
    const std::size_t length = strnlen(text, size);
    std::memcpy(field, text, length);
    std::memset(field + length, 0, size - length);
}
