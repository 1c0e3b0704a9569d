#pragma once

/// @file
/// Masked diagnostic prints.

#include "libwlan/api.h"

extern "C" {

/// Prints to standard output when `level` shares a bit with the library's debug mask, which is 2.
/// @param format a printf format that carries its own line feed; the text is cut at 255 characters.
LIBWLAN_API void PRINTDEBUGMSG(unsigned int level, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
}
