// SPDX-License-Identifier: MIT
// How much this process uses, and what it would leave behind.

#pragma once

/// What this process uses: open descriptors by what they are, and bytes of heap.
struct resource_usage {
    int sockets = 0;
    int consoles = 0;
    int others = 0;
    long heap = 0;
};

resource_usage count_resources();

/// What came since then; without the heap of the consoles.
resource_usage gained_since(const resource_usage& before);

/// Closes every socket and console, as a program does that lives with what the library leaves open.
void close_leftovers();
