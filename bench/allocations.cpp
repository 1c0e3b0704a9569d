// SPDX-License-Identifier: MIT
// Counts the allocations of a benchmark.

#include "bench/allocations.h"

std::size_t allocations = 0;

extern "C" void* __libc_malloc(std::size_t size);

// In front of the C library's and the virtual camera's.
extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}
