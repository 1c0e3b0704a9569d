#include "realtek/log.h"

#include <cstdarg>

void log_to(FILE* log, const char* format, ...) {
    if (log == nullptr)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(log, format, arguments);
    va_end(arguments);
}
