#include "util/console_trace.h"

#include <cstdarg>

#include "libwlan/clock.h"

FILE* open_console() {
    return std::fopen("/dev/console", "w");
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
