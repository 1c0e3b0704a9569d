#pragma once

#include <cstdlib>

/// Stops a fuzz target at an input for which something does not hold that always has to.
inline void must(bool holds) {
    if (!holds)
        std::abort();
}
