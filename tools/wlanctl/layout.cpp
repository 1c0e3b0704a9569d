// SPDX-License-Identifier: MIT
// Text in columns.

#include "layout.h"

#include <algorithm>
#include <sstream>

namespace {

bool continues(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace

std::size_t width(const std::string& text) {
    return text.size() -
           static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
}

std::string padded(const std::string& text, std::size_t columns) {
    const std::size_t taken = width(text);
    return taken < columns ? text + std::string(columns - taken, ' ') : text;
}

std::string cut(const std::string& text, std::size_t columns) {
    if (width(text) <= columns || columns == 0)
        return text;
    std::size_t end = 0;
    for (std::size_t characters = 0; end < text.size(); ++end) {
        if (!continues(text[end]) && ++characters == columns)
            break;
    }
    return text.substr(0, end) + "~";
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
