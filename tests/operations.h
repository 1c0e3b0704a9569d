#pragma once

// Everything that a camera program can ask of the library, as a table.

#include <string>
#include <vector>

struct operation {
    const char* name;
    const char* family;   // of the adapter that is plugged in
    std::vector<int> may; // answer, when something fails on the way
    int keeps = 0;        // sockets that stay open by design, also when all goes well
    int seconds = 0;      // the longest wait
    int (*run)() = nullptr;
};

/// A camera that both bands have a network for, and whose store is complete.
std::string scene_for(const operation& operation, const std::string& faults = "[]");

extern const std::vector<operation> operations;
