// SPDX-License-Identifier: MIT
// Starts a program with libvcamera.so between it and libc, or not at all.

#pragma once

#include <string>
#include <vector>

/// Replaces this process by the program. Nothing of the program runs before it is certain that the
/// loader will preload the library.
/// @param program its name, which is looked for as execvp() does, and its arguments
/// @return after a line on standard error that says why it was not started.
void run_program(const std::vector<std::string>& program, const std::string& scratch);
