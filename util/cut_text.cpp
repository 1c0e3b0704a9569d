#include "util/cut_text.h"

#include <cstdarg>
#include <cstdio>

void cut_text(char* buffer, std::size_t size, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, size, format, arguments);
    va_end(arguments);
}
