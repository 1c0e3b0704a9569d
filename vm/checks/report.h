// SPDX-License-Identifier: MIT
// The report of the machine: one line for each check, with what was seen, on the second serial
// line.

#pragma once

#include <string>

struct verdict {
    bool passed;
    std::string seen;
};

struct check {
    const char* what;
    verdict (*run)();
};

/// Runs a check and reports it.
void report(const check& check);
