#include "util/text_field.h"

#include <cstring>

void fill_characters(char* characters, std::size_t size, const char* text) {
    std::strncpy(characters, text, size);
}
