// SPDX-License-Identifier: MIT
// What the library says.

#include "base/message.h"

#include <cstdarg>

#include "base/paths.h"
#include "base/text.h"
#include "base/unique_file.h"
#include "libwlan/clock.h"
#include "libwlan/files.h"

namespace libwlan {

std::optional<int> read_debug_level() {
    if (exist(path::debug_level) == 0)
        return std::nullopt;
    const unique_file file = open_file(path::debug_level, "r+");
    if (file == nullptr)
        return std::nullopt;
    return read_integer(file.get());
}

void print_message(FILE* out, const char* format, ...) {
    if (out == nullptr)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(out, format, arguments);
    va_end(arguments);
}

FILE* open_console() {
    return std::fopen(path::console, "w");
}

void trace(FILE*& console, int debug_level, const char* format, ...) {
    if (debug_level == 0 || console == nullptr)
        return;
    std::fprintf(console, "\033[1;34m%u ", clock_time());
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(console, format, arguments);
    va_end(arguments);
    std::fputs("\033[0m\n", console);
    std::fclose(console);
    console = nullptr;
}

} // namespace libwlan
