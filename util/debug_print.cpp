#include "libwlan/debug_print.h"

#include <cstdarg>
#include <cstdio>

#include "util/debug_level.h"

void PRINTDEBUGMSG(unsigned int level, const char* format, ...) {
    if ((level & debug_mask) == 0)
        return;
    char message[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    std::printf("%s", message);
}
