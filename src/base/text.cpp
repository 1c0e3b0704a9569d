// SPDX-License-Identifier: MIT
// Texts in fixed-size fields and buffers.

#include "base/text.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace libwlan {

void cut_text(char* buffer, std::size_t size, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, size, format, arguments);
    va_end(arguments);
}

void fill_characters(char* characters, std::size_t size, const char* text) {
    const std::size_t length = strnlen(text, size);
    std::memcpy(characters, text, length);
    std::memset(characters + length, 0, size - length);
}

std::optional<int> read_integer(FILE* file) {
    char text[64]{};
    if (std::fread(text, 1, sizeof text - 1, file) == 0)
        return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text, &end, 10);
    if (end == text || errno == ERANGE || value < INT_MIN || value > INT_MAX)
        return std::nullopt;
    return static_cast<int>(value);
}

void clear_bytes(void* bytes, std::size_t size) {
    std::memset(bytes, 0, size);
}

} // namespace libwlan
