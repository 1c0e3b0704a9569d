// SPDX-License-Identifier: MIT
// Names from the air, made fit for a terminal.

#include "escape.h"

#include <algorithm>
#include <cstddef>

namespace {

struct encoding {
    std::size_t length;
    char32_t least; ///< a longer form of a smaller number is no valid UTF-8
    unsigned char mask;
    unsigned char lead;
};

constexpr encoding encodings[] = {
    // length, least, mask and value of the first byte
    {1, 0, 0x80, 0x00},
    {2, 0x80, 0xE0, 0xC0},
    {3, 0x800, 0xF0, 0xE0},
    {4, 0x10000, 0xF8, 0xF0},
};

struct range {
    char32_t first;
    char32_t last;
};

constexpr range unprintable[] = {
    {0x00, 0x1F},           // control bytes
    {0x5C, 0x5C},           // the backslash
    {0x7F, 0x9F},           // DEL and the C1 controls
    {0x061C, 0x061C},       // Arabic letter mark
    {0x200E, 0x200F},       // direction marks
    {0x2028, 0x202E},       // line and paragraph separators, direction embeddings and overrides
    {0x2066, 0x2069},       // direction isolates
    {0xD800, 0xDFFF},       // surrogates
    {0x110000, 0xFFFFFFFF}, // beyond Unicode
};

bool is_printable(char32_t character) {
    return std::none_of(std::begin(unprintable), std::end(unprintable), [=](const range& r) {
        return character >= r.first && character <= r.last;
    });
}

/// @return the length of the printable character that `text` begins with, 0 when it has none.
std::size_t printable_length(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const auto* form = std::find_if(std::begin(encodings), std::end(encodings),
                                    [=](const encoding& e) { return (first & e.mask) == e.lead; });
    if (form == std::end(encodings) || text.size() < form->length)
        return 0;
    char32_t character = first & static_cast<unsigned char>(~form->mask);
    for (std::size_t i = 1; i < form->length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0) != 0x80)
            return 0;
        character = (character << 6) | (next & 0x3F);
    }
    return character >= form->least && is_printable(character) ? form->length : 0;
}

} // namespace

std::string escape(std::string_view text) {
    constexpr char digits[] = "0123456789abcdef";
    std::string safe;
    while (!text.empty()) {
        const std::size_t length = text == " " ? 0 : printable_length(text);
        if (length > 0) {
            safe += text.substr(0, length);
        } else {
            const auto byte = static_cast<unsigned char>(text.front());
            safe += {'\\', 'x', digits[byte >> 4], digits[byte & 0xF]};
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return safe;
}
