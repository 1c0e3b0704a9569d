// SPDX-License-Identifier: MIT
// Counting the allocations of a benchmark.

#pragma once

#include <benchmark/benchmark.h>

/// How often this program has asked malloc() for memory so far, itself or through operator new.
extern std::size_t allocations;

/// @param before what `allocations` was before the first run.
inline benchmark::Counter allocations_of_a_run(std::size_t before) {
    return {static_cast<double>(allocations - before), benchmark::Counter::kAvgIterations};
}
