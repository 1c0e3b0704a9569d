// SPDX-License-Identifier: MIT
// A command of the firmware's that runs for a while.

#pragma once

#include <string>

#include <sys/types.h>

class program {
public:
    program() = default;
    ~program() { stop(); }
    program(const program&) = delete;
    program& operator=(const program&) = delete;

    /// Runs a command line, unless it runs already; it gets no descriptor but the standard streams.
    void start(const std::string& command);

    /// Ends it and what it started.
    void stop();

    /// Collects its exit status when it has ended.
    void collect();

private:
    pid_t process_ = 0;
};
