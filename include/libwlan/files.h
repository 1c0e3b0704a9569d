// SPDX-License-Identifier: MIT
/// @file
/// Small file functions that camera programs share. Paths are NUL-terminated and not null.

#pragma once

#include "libwlan/api.h"

extern "C" {

/// Asks whether a file or folder exists.
/// @return 1 when `path` exists, else 0, also when a folder on the way cannot be searched.
LIBWLAN_API int exist(const char* path);

/// Creates `path` (mode 0666 less the umask) when it does not exist. An existing file is left as it
/// is, its times too.
/// @return 1, or 0 after two lines on standard error when it cannot be opened for reading and
///         writing, or created.
LIBWLAN_API int touch(const char* path);
}
