#pragma once

/// @file
/// Pid files and the daemons behind them.

#include "libwlan/api.h"

extern "C" {

/// Makes `path` the calling process's pid file (mode 0644) and locks it for the life of the
/// process: the descriptor stays open on purpose, because it holds the lock.
/// @return 0, or -1: another process holds the file ("Program already exists." on standard output),
///         it cannot be locked ("Unable to lock …") or opened ("open" through perror).
LIBWLAN_API int create_pid_file(const char* path);

/// Sends `signal` to the process whose number stands in `pidfile`. A file without a number, or with
/// one that names no single process (0 or below), signals nobody.
/// @param wait 0 returns at once; otherwise polls once a second, ten times at most, until the
///        process is gone, and then removes the pid file.
/// @return 0, also when there is no pid file; -1 when ten polls have passed (message on standard
///         output, the pid file stays).
LIBWLAN_API int send_signal_ps(const char* pidfile, int signal, int wait);
}
