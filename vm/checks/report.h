// SPDX-License-Identifier: MIT
// The report of the machine: one line for each check, with what was seen, on the second serial
// line.

#pragma once

#include <string>
#include <vector>

struct verdict {
    bool passed;
    std::string seen;
};

struct check {
    const char* what;
    verdict (*run)();
};

/// Runs the checks whose names begin as one of the groups and reports them.
/// @param groups ends with a null pointer.
/// @return 0, or 1 when a group has no check.
int report(const std::vector<check>& checks, const char* const* groups);
