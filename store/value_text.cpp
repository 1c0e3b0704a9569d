// SPDX-License-Identifier: MIT
// How values are written in the file.

#include "store/value_text.h"

#include <algorithm>
#include <charconv>

namespace {

/// Leaves room for the key and a comment in the 197 bytes that inih has for a line.
constexpr std::size_t most_per_line = 120;

bool is_plain(char byte) {
    constexpr std::string_view punctuation = "-_.:";
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z') || punctuation.find(byte) != std::string_view::npos;
}

/// Takes the next byte, escaped or not, off what stands between quotes; 0 when it is wrong there.
char take_byte(std::string_view& rest) {
    const char first = rest.front();
    const char escaped = rest.size() > 1 ? rest[1] : '\0';
    if (first == '\\' && escaped == 'x') {
        unsigned char byte = 0;
        const std::string_view digits = rest.substr(2, 2);
        const char* end = digits.data() + digits.size();
        const bool complete = std::from_chars(digits.data(), end, byte, 16).ptr == rest.data() + 4;
        rest.remove_prefix(2 + digits.size());
        return complete ? static_cast<char>(byte) : '\0';
    }
    rest.remove_prefix(first == '\\' && escaped != '\0' ? 2 : 1);
    if (first == '\\')
        return escaped == 'n' ? '\n' : escaped == '"' || escaped == '\\' ? escaped : '\0';
    return first == '"' ? '\0' : first;
}

} // namespace

std::optional<std::string> store::decode_value(const value_lines& value) {
    if (value.size() == 1 && (value.front().empty() || value.front().front() != '"'))
        return value.front();
    std::string text;
    for (const std::string_view line : value) {
        if (line.size() < 2 || line.front() != '"' || line.back() != '"')
            return std::nullopt;
        std::string_view rest = line.substr(1, line.size() - 2);
        while (!rest.empty()) {
            text += take_byte(rest);
            if (text.back() == '\0')
                return std::nullopt;
        }
    }
    return text;
}

store::value_lines store::encode_value(std::string_view text) {
    if (!text.empty() && text.size() <= most_per_line &&
        std::all_of(text.begin(), text.end(), is_plain))
        return {std::string(text)};
    value_lines lines = {"\""};
    for (const char byte : text) {
        if (lines.back().size() > most_per_line) {
            lines.back() += '"';
            lines.emplace_back("\"");
        }
        if (byte == ';') { // starts a comment behind a blank, quoted or not
            lines.back() += "\\x3b";
            continue;
        }
        if (byte == '"' || byte == '\\')
            lines.back() += '\\';
        append_printable(lines.back(), byte);
    }
    lines.back() += '"';
    return lines;
}

void store::append_printable(std::string& text, char byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    if (byte >= ' ' && byte <= '~') {
        text += byte;
        return;
    }
    const auto number = static_cast<unsigned char>(byte);
    text += {'\\', 'x', digits[number >> 4U], digits[number & 15U]};
}
