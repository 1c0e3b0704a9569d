#pragma once

#include "libwlan/wext.h"

/// The two command lines that start a daemon.
struct daemon_commands {
    const char* foreground; ///< for field engineers: lasts as long as the daemon
    const char* background;
};

/// Starts a daemon in the form that the debug level of `radio` asks for, tracing the command line
/// to the console.
void start_daemon(wext& radio, const daemon_commands& commands);
