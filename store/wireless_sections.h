// SPDX-License-Identifier: MIT
// The sections of the wireless settings.

#pragma once

#include "libwlan/store.h"
#include "store/field.h"

namespace store {

extern const section client_section;

/// Reads both blocks of the record; one that is not needed may be left out, but not be wrong.
_wireless_setting read_wireless(const config_file& file, need access_point, need client);

} // namespace store
