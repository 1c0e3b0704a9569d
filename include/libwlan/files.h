#pragma once

/// @file
/// Small file functions that camera programs share.

#include "libwlan/api.h"

extern "C" {

/// @return 1 when `path` exists, else 0.
LIBWLAN_API int exist(const char* path);

/// Creates `path` (mode 0666 less the umask) when it does not exist; an existing file is left as it
/// is.
/// @return 1, or 0 after two lines on standard error when it cannot be opened or created.
LIBWLAN_API int touch(const char* path);
}
