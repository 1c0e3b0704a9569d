// SPDX-License-Identifier: MIT
/// @file
/// The clock that stamps console trace lines.

#pragma once

#include <cstdint>

#include "libwlan/api.h"

extern "C" {

/// Reads the raw monotonic clock.
/// @return milliseconds; wraps after about 49.7 days.
LIBWLAN_API std::uint32_t clock_time();
}
