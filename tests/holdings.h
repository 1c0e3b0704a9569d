#pragma once

#include <cstddef>

/// What this process holds: open descriptors by what they are, and bytes of heap.
struct holdings {
    int sockets = 0;
    int consoles = 0;
    int others = 0;
    std::size_t heap = 0;
};

holdings count_holdings();

/// Heap of an open stream that nothing was written to.
std::size_t heap_of_a_stream();

/// Closes every socket and console, as a program does that lives with what the library leaves open.
void close_what_stays();
