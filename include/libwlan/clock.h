#pragma once

/// @file
/// The clock that stamps console trace lines.

#include <cstdint>

#include "libwlan/api.h"

extern "C" {

/// @return milliseconds of the raw monotonic clock; wraps after about 49.7 days.
LIBWLAN_API std::uint32_t clock_time();
}
