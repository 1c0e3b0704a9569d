// SPDX-License-Identifier: MIT
/// @file
/// Masked diagnostic prints.

#pragma once

#include "libwlan/api.h"

extern "C" {

/// Prints to standard output when `level` shares a bit with the library's debug mask, which is 2
/// unless libwlan was built with another. /tmp/debug_level has no part in it.
/// @param format a printf format that carries its own line feed; the text is cut at 255 characters.
LIBWLAN_API void PRINTDEBUGMSG(unsigned int level, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
}
