#pragma once

// The debug level that field engineers write to /tmp/debug_level, and the mask that gives its bits
// a meaning.

#include <optional>

/// Fixed at build time. The bit of value 2 prints masked diagnostics and runs the daemons in the
/// foreground.
constexpr unsigned int debug_mask = 2;

/// The number in /tmp/debug_level; none when there is no such file or no number in it.
std::optional<int> read_debug_level();
