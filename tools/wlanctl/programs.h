// SPDX-License-Identifier: MIT
// The programs of the camera's image.

#pragma once

#include <string>

/// @param access that is needed, as access() takes it.
/// @return where the shell would find the program in PATH; empty when it would not.
std::string find_program(const std::string& name, int access);
