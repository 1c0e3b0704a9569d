#include "util/debug_level.h"

#include <cstdio>

#include "libwlan/files.h"
#include "util/integer_text.h"

namespace {
constexpr const char* debug_level_file = "/tmp/debug_level";
}

std::optional<int> read_debug_level() {
    if (exist(debug_level_file) == 0)
        return std::nullopt;
    FILE* file = std::fopen(debug_level_file, "r+");
    if (file == nullptr)
        return std::nullopt;
    const std::optional<int> level = read_integer(file);
    std::fclose(file);
    return level;
}
