// SPDX-License-Identifier: MIT
// What the library says: messages, trace lines on the console, and the debug level that asks for
// them.

#pragma once

#include <cstdio>
#include <optional>

namespace libwlan {

#ifndef LIBWLAN_DEBUG_MASK
#define LIBWLAN_DEBUG_MASK 2
#endif

/// Fixed at build time. The bit of value 2 prints masked diagnostics and runs the daemons in the
/// foreground; that of value 4 prints the security elements of every scanned network.
constexpr unsigned int debug_mask = LIBWLAN_DEBUG_MASK;

/// The number in /tmp/debug_level; none when there is no such file or no number in it.
std::optional<int> read_debug_level();

/// Prints a message. Its head, the function and a number as in "does_ifup[1483]", stands in the
/// format, so that a search for it finds the place. The numbers are part of the interface.
/// @param out standard output, standard error or a survey's log; null takes no message.
__attribute__((format(printf, 2, 3))) void print_message(FILE* out, const char* format, ...);

/// Opens "/dev/console" for one trace line.
FILE* open_console();

/// With a debug level other than 0 and an open console, writes one line, blue and stamped with the
/// time, and closes the stream. Otherwise the stream stays open, which is part of the interface.
__attribute__((format(printf, 3, 4))) void trace(FILE*& console, int debug_level,
                                                 const char* format, ...);

} // namespace libwlan
