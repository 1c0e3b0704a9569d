// SPDX-License-Identifier: MIT
// What has to hold for every input.

#pragma once

#include <cstdlib>

/// Stops a fuzz target at an input for which something does not hold that always has to.
inline void fuzz_check(bool holds) {
    if (!holds)
        std::abort();
}
