// SPDX-License-Identifier: MIT
// The clock that stamps trace lines.

#include "libwlan/clock.h"

#include <cstdint>
#include <ctime>

std::uint32_t clock_time() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_RAW, &now);
    // Wraps on purpose: the value only stamps trace lines.
    return static_cast<std::uint32_t>(now.tv_sec) * 1000U +
           static_cast<std::uint32_t>(now.tv_nsec / 1000000);
}
