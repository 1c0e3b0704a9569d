#pragma once

#include <cstddef>

/// Copies `text` into `size` characters and pads them with NULs. A text that fills them leaves no
/// terminator.
void fill_characters(char* characters, std::size_t size, const char* text);

/// Fills a fixed-size text field: drivers and stores take such fields by their size.
template <std::size_t size>
void fill_field(char (&field)[size], const char* text) {
    fill_characters(field, size, text);
}
