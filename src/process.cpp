// SPDX-License-Identifier: MIT
// Pid files and the daemons behind them.

#include "libwlan/process.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "base/text.h"
#include "base/unique_fd.h"
#include "base/unique_file.h"

using namespace libwlan;

namespace {

constexpr int death_polls = 10;

int lock_whole_file(int file) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return fcntl(file, F_SETLK, &lock);
}

void write_pid(int file) {
    char text[40];
    std::snprintf(text, sizeof text, "%ld\n", static_cast<long>(getpid()));
    if (ftruncate(file, 0) != 0 || write(file, text, std::strlen(text)) < 0)
        std::perror("write");
}

/// @return the number in a pid file; 0 when there is none.
int read_pid(const char* path) {
    const unique_file file = open_file(path, "r");
    return file != nullptr ? read_integer(file.get()).value_or(0) : 0;
}

} // namespace

int create_pid_file(const char* path) {
    unique_fd file(open(path, O_RDWR | O_CREAT, 0644));
    if (!file) {
        std::perror("open");
        return -1;
    }
    // What is open holds the lock for the life of the process. It stays open without a lock, too,
    // which is part of the interface.
    const int locked = file.leave_open();
    if (lock_whole_file(locked) != 0) {
        if (errno == EACCES || errno == EAGAIN) {
            std::puts("Program already exists.");
        } else {
            std::printf("Unable to lock %s\n", path);
        }
        return -1;
    }
    write_pid(locked);
    return 0;
}

int send_signal_ps(const char* pidfile, int signal, int wait) {
    const int pid = read_pid(pidfile);
    if (pid <= 0) // kill() takes 0 and negative numbers for whole groups of processes
        return 0;

    kill(pid, signal);
    if (wait == 0)
        return 0;
    int polls = 0;
    while (polls < death_polls && kill(pid, 0) == 0) {
        sleep(1);
        ++polls;
    }
    // The count alone decides: a process that died during the last sleep still counts as alive.
    if (polls == death_polls) {
        std::printf("Can not kill process ID %d, pidfile=%s, signal=%d\n", pid, pidfile, signal);
        return -1;
    }
    unlink(pidfile);
    return 0;
}
