#include "report.h"

#include <cstdio>
#include <exception>

namespace {

verdict run(const check& check) {
    try {
        return check.run();
    } catch (const std::exception& error) {
        return {false, error.what()};
    }
}

} // namespace

bool report(const check& check) {
    // The daemons that a check starts have the first serial line for their own words.
    static FILE* const second_line = std::fopen("/dev/ttyS1", "we");
    const auto [passed, seen] = run(check);
    std::fprintf(second_line, "%-5s %-50s %s\n", passed ? "ok" : "FAIL", check.what, seen.c_str());
    std::fflush(second_line);
    return passed;
}
