#pragma once

/// What this process holds: open descriptors by what they are, and bytes of heap.
struct holdings {
    int sockets = 0;
    int consoles = 0;
    int others = 0;
    long heap = 0;
};

holdings count_holdings();

/// What came since then; without the heap of the consoles.
holdings gained_since(const holdings& before);

/// Closes every socket and console, as a program does that lives with what the library leaves open.
void close_what_stays();
