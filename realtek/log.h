#pragma once

#include <cstdio>

/// Writes a message to a survey's log. A log that could not be opened takes none.
__attribute__((format(printf, 2, 3))) void log_to(FILE* log, const char* format, ...);
