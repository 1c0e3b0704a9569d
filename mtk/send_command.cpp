#include "mtk/send_command.h"

#include <cstdarg>
#include <cstdio>

int send_command(wlan& radio, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(radio.command, sizeof radio.command, format, arguments);
    va_end(arguments);
    return radio.simple_set_private(radio.command);
}
