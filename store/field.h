// SPDX-License-Identifier: MIT
// Values of the file and fields of the records, by tables.

#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>

#include "store/config_file.h"

namespace store {

/// A word of the file for one value of a byte.
struct word {
    unsigned char value;
    const char* name;
};

enum class form {
    byte,   ///< an unsigned byte: one of the field's words, or 0 to 255
    number, ///< a 32-bit integer: push-button set-up stores error numbers as channels, too
    text,   ///< NUL-terminated
    bssid,  ///< text: nothing, or six hexadecimal octets with colons
    ipv4,   ///< text: a dotted address
};

/// One key of a section and its place in the record that a camera program sees.
struct field {
    const char* key;
    form kind;
    std::size_t offset;   ///< in the record
    std::size_t most;     ///< bytes of a text, without the NUL
    const char* fallback; ///< value of a key that is left out; null when it must be there
    std::initializer_list<word> words;
};

struct section {
    const char* name;
    std::initializer_list<field> fields;
};

enum class need { whole_section, what_is_there };

/// Fills the section's places in the record, which is all zero before. Throws a failure that names
/// file, line and key.
void read_section(const config_file& file, const section& section, need need, void* record);

/// @return the field of the record as the file has it, without quotes.
std::string text_of_field(const field& field, const void* record);

} // namespace store
