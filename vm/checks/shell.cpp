// SPDX-License-Identifier: MIT
// Running the machine's programs.

#include "shell.h"

#include <cstdio>
#include <stdexcept>

std::string output_of(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("cannot start: " + command);
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        output += static_cast<char>(c);
    pclose(pipe);
    if (!output.empty() && output.back() == '\n')
        output.pop_back();
    return output;
}
