// SPDX-License-Identifier: MIT
// A command of the firmware's that runs for a while.

#include "program.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int pause_us = 10000;
constexpr int patience = 100; // pauses until it is killed

} // namespace

// Every descriptor of this program is opened with CLOEXEC.
void program::start(const std::string& command) {
    collect();
    if (process_ != 0 || command.empty())
        return;
    posix_spawnattr_t attributes;
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                              POSIX_SPAWN_SETPGROUP);
    const char* const argv[] = {"sh", "-c", command.c_str(), nullptr};
    const int error =
        posix_spawn(&process_, "/bin/sh", nullptr, &attributes, const_cast<char**>(argv), environ);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) {
        process_ = 0;
        std::fprintf(stderr, "wlansetup: %s: %s\n", command.c_str(), std::strerror(error));
    }
}

void program::collect() {
    if (process_ != 0 && waitpid(process_, nullptr, WNOHANG) != 0)
        process_ = 0;
}

void program::stop() {
    collect();
    if (process_ == 0)
        return;
    kill(-process_, SIGTERM);
    for (int turn = 0; turn < patience; ++turn) {
        collect();
        if (process_ == 0)
            return;
        usleep(pause_us);
    }
    kill(-process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
}
