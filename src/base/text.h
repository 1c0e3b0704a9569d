// SPDX-License-Identifier: MIT
// Texts in fixed-size fields and buffers.

#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>

namespace libwlan {

/// Formats into a buffer that is known to be too short for some values: what does not fit is cut
/// off.
__attribute__((format(printf, 3, 4))) void cut_text(char* buffer, std::size_t size,
                                                    const char* format, ...);

/// Copies `text` into `size` characters and pads them with NULs. A text that fills them leaves no
/// terminator.
void fill_characters(char* characters, std::size_t size, const char* text);

/// Fills a fixed-size text field: drivers and stores take such fields by their size.
template <std::size_t size>
void fill_field(char (&field)[size], const char* text) {
    fill_characters(field, size, text);
}

/// The decimal integer that `file` begins with, after blanks; none when there is no number or when
/// it does not fit.
std::optional<int> read_integer(FILE* file);

/// Fills `size` bytes with zeros, by a call: the string instructions that compilers put in its
/// place took a tenth of the time of reading a scan.
void clear_bytes(void* bytes, std::size_t size);

} // namespace libwlan
