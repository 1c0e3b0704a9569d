#pragma once

#include <cstdio>
#include <optional>

/// The decimal integer that `file` begins with, after blanks; none when there is no number or when
/// it does not fit.
std::optional<int> read_integer(FILE* file);
