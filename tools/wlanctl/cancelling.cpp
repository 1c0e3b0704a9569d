// SPDX-License-Identifier: MIT
// Being asked to end in the midst of a request.

#include "cancelling.h"

#include <cerrno>
#include <csignal>
#include <cstddef>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int ending_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

volatile std::sig_atomic_t asked = 0;
int ends[2] = {-1, -1};

void note_end(int /*signal*/) {
    const int error = errno;
    asked = 1;
    // Full is as good as written: it is readable.
    static_cast<void>(!write(ends[1], "", 1));
    errno = error;
}

void handle(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler; // without SA_RESTART: what waits, ends
    for (const int signal : ending_signals)
        sigaction(signal, &action, nullptr);
}

} // namespace

void take_ending_signals() {
    // Again after a prompt, which has them end the program once it is answered.
    if (ends[0] >= 0 || pipe2(ends, O_CLOEXEC | O_NONBLOCK) == 0)
        handle(note_end);
}

void release_ending_signals() {
    handle(SIG_DFL);
}

bool asked_to_end() {
    return asked != 0;
}

int ending_descriptor() {
    return ends[0];
}

void pause_ms(int milliseconds) {
    if (!asked_to_end())
        usleep(static_cast<useconds_t>(milliseconds) * 1000);
}
