#pragma once

// The report of the machine: one line for each check, with what was seen, on the second serial
// line.

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
/// @return whether it passed.
bool report(const check& check);

/// Runs a table of checks.
/// @return 0, or 1 when one of them failed.
template <typename Checks>
int report_all(const Checks& checks) {
    int status = 0;
    for (const check& each : checks)
        if (!report(each))
            status = 1;
    return status;
}
