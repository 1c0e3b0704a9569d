#include "util/text_field.h"

#include <cstring>

void fill_characters(char* characters, std::size_t size, const char* text) {
    const std::size_t length = strnlen(text, size);
    std::memcpy(characters, text, length);
    std::memset(characters + length, 0, size - length);
}
