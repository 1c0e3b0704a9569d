// SPDX-License-Identifier: MIT
// The report of the machine.

#include "report.h"

#include <cstdio>
#include <exception>

void report(const check& check) {
    // The daemons that a check starts have the first serial line for their own words.
    static FILE* const second_line = std::fopen("/dev/ttyS1", "we");
    verdict found{};
    try {
        found = check.run();
    } catch (const std::exception& error) {
        found.seen = error.what();
    }
    std::fprintf(second_line, "%-5s %-50s %s\n", found.passed ? "ok" : "FAIL", check.what,
                 found.seen.c_str());
    std::fflush(second_line);
}
