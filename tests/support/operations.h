// SPDX-License-Identifier: MIT
// Everything that a camera program can ask of the library, as a table.

#pragma once

#include <vector>

#include "tests/support/scene.h"

struct operation {
    const char* name;
    const char* family;   // of the adapter that is plugged in
    std::vector<int> may; // answer, when something fails on the way
    int keeps = 0;        // sockets that stay open by design, also when all goes well
    int seconds = 0;      // the longest wait
    int (*run)() = nullptr;
};

/// A camera that both bands have a network for, and whose store is complete.
scene camera_for(const operation& operation);

extern const std::vector<operation> operations;
