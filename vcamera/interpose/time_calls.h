// SPDX-License-Identifier: MIT
// Waiting, by the camera's clock.

#pragma once

#include <cstdint>

/// @param call by which faults and the journal know it
/// @return 0, or -1 with errno set.
int pause_for(const char* call, std::int64_t microseconds);
