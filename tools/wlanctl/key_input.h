// SPDX-License-Identifier: MIT
// Keys from a file or the terminal.

#pragma once

#include <string>

/// Reads a key from a file, "-" being standard input; one line feed at its end, with or without a
/// carriage return, does not belong to it. What is longer than any key is cut, but stays too long.
/// @throws failure when the file cannot be read.
void read_key_file(const std::string& path, std::string& key);

/// Asks for a key on the terminal without showing what is typed.
/// @param purpose what the key is for, as the prompt names it.
/// @throws CLI::ValidationError when standard input is no terminal.
void prompt_for_key(const std::string& purpose, std::string& key);
