// SPDX-License-Identifier: MIT
/// @file
/// Pid files and the daemons behind them. A pid file holds a decimal process number and a line
/// feed; its path is NUL-terminated and not null.

#pragma once

#include "libwlan/api.h"

extern "C" {

/// Makes `path` the calling process's pid file (mode 0644 less the umask) and locks it, so that a
/// second process is refused. The descriptor stays open for the life of the process, and after a
/// failed lock too.
///
/// The lock is the process's: it ends with it, children do not have it, and it also ends when the
/// process closes any other descriptor of the file, as send_signal_ps() and touch() do.
/// @return 0; -1 when another process holds the lock ("Program already exists." on standard
///         output), or when the file cannot be locked ("Unable to lock ...") or opened ("open" and
///         the reason on standard error). A number that cannot be written ("write" there) is no
///         failure: the lock is held.
LIBWLAN_API int create_pid_file(const char* path);

/// Sends a signal to the process whose number stands in `pidfile`. A file without a number, or with
/// one that names no single process (0 or below), signals nobody.
/// @param signal its number, such as 15 for SIGTERM.
/// @param wait 0 returns at once; any other asks once a second, ten times at most, whether the
///        process is gone, and then removes the pid file. A child of the caller that nobody waits
///        for counts as not gone.
/// @return 0, also when there is no pid file or the signal could not be sent; -1 after ten seconds
///         (message on standard output, the pid file stays).
LIBWLAN_API int send_signal_ps(const char* pidfile, int signal, int wait);
}
