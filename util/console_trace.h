#pragma once

// Trace lines on the camera's console, blue and stamped with the time.

#include <cstdio>

/// Opens "/dev/console" for one trace line.
FILE* open_console();

/// With a debug level other than 0 and an open console, writes one line and closes the stream.
/// Otherwise the stream stays open: boards count on quiet commands holding the console.
__attribute__((format(printf, 3, 4))) void trace(FILE*& console, int debug_level,
                                                 const char* format, ...);
