#pragma once

#include <optional>

/// Reads the driver's answer about one baseband register.
/// @return the register's value; none for a text that is no such answer.
std::optional<unsigned int> read_bbp_answer(const char* text);
