#pragma once

#include <cstddef>

/// Formats into a buffer that is known to be too short for some values: what does not fit is cut
/// off.
__attribute__((format(printf, 3, 4))) void cut_text(char* buffer, std::size_t size,
                                                    const char* format, ...);
