// SPDX-License-Identifier: MIT
// Programs of the camera's system image.

#pragma once

#include "base/unique_file.h"

namespace libwlan {

/// Runs a command line through the shell and waits for it.
/// @return the status of system(); most callers go on whatever the program answered.
int run_program(const char* command_line);

/// Runs a command line through the shell, to read what it prints.
unique_pipe read_program(const char* command_line);

} // namespace libwlan
