// SPDX-License-Identifier: MIT
// Masked diagnostic prints.

#include "libwlan/debug_print.h"

#include <cstdarg>
#include <cstdio>

#include "base/message.h"

void PRINTDEBUGMSG(unsigned int level, const char* format, ...) {
    if ((level & libwlan::debug_mask) == 0)
        return;
    char message[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    std::printf("%s", message);
}
