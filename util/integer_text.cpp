#include "util/integer_text.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

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
