// SPDX-License-Identifier: MIT
// Text in columns.

#include "layout.h"

#include <algorithm>
#include <cwchar>
#include <sstream>
#include <string_view>

namespace {

bool continues(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

struct character {
    std::size_t bytes;
    std::size_t columns;
};

/// @param text is not empty. What libc does not know takes one column.
character first_of(std::string_view text) {
    std::mbstate_t state{};
    wchar_t wide = 0;
    const std::size_t bytes = std::mbrtowc(&wide, text.data(), text.size(), &state);
    const bool known = bytes > 0 && bytes <= text.size();
    const int columns = known ? wcwidth(wide) : -1;
    const std::size_t otherwise = continues(text.front()) ? 0 : 1;
    return {known ? bytes : 1, columns >= 0 ? static_cast<std::size_t>(columns) : otherwise};
}

} // namespace

std::size_t width(const std::string& text) {
    std::size_t columns = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const character next = first_of(rest);
        columns += next.columns;
        rest.remove_prefix(next.bytes);
    }
    return columns;
}

std::string padded(const std::string& text, std::size_t columns) {
    const std::size_t taken = width(text);
    return taken < columns ? text + std::string(columns - taken, ' ') : text;
}

std::string cut(const std::string& text, std::size_t columns) {
    if (width(text) <= columns || columns == 0)
        return text;
    std::string_view rest = text;
    for (std::size_t taken = 0; !rest.empty();) {
        const character next = first_of(rest);
        taken += next.columns;
        if (taken >= columns) // the last one is for the '~'
            break;
        rest.remove_prefix(next.bytes);
    }
    return text.substr(0, text.size() - rest.size()) + "~";
}

std::string aligned(const std::vector<text_row>& rows, const std::string& indent) {
    std::vector<std::size_t> widths;
    for (const text_row& line : rows) {
        widths.resize(std::max(widths.size(), line.size()));
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], width(line[i]));
    }
    std::string text;
    for (const text_row& line : rows) {
        text += indent;
        for (std::size_t i = 0; i + 1 < line.size(); ++i)
            text += padded(line[i], widths[i] + 2);
        text += line.back();
        text.resize(text.find_last_not_of(' ') + 1); // of empty cells
        text += "\n";
    }
    return text;
}

std::vector<std::string> wrapped(const std::string& text, std::size_t columns) {
    std::vector<std::string> lines;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (!lines.empty() && width(lines.back()) + 1 + width(word) <= columns) {
            lines.back() += " " + word;
        } else {
            lines.push_back(word);
        }
    }
    return lines;
}
