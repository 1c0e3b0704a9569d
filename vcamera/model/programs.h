// SPDX-License-Identifier: MIT
// The programs of the camera's image. Command lines run here and never on the host.

#pragma once

#include <string>
#include <vector>

#include "vcamera/model/camera_state.h"

using words = std::vector<std::string>;

struct program_output {
    std::string out;
    std::string err;
};

/// Splits a command line at blanks, as the shell does with plain words.
words split(const std::string& command);

/// Prints a program's last message.
/// @return the status with which it exits.
int fail(program_output& output, const std::string& message, int status = 1);

/// @return the exit status as wait() gives it.
int run_command(camera_state& state, const std::string& command, program_output& output);
