// SPDX-License-Identifier: MIT
// The interposed functions of time, which is the camera's.

#include <cstdint>
#include <cstdio>
#include <ctime>

#include <sys/select.h>
#include <unistd.h>

#include "vcamera/interpose/intercepted_call.h"
#include "vcamera/interpose/interposer.h"
#include "vcamera/model/clock.h"

namespace {

constexpr std::int64_t second = 1000000;

/// @return 0, or -1 with errno set.
int pause_for(const char* call, std::int64_t microseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%g s",
                  static_cast<double>(microseconds) / static_cast<double>(second));
    int speed = 0;
    const int result = intercept({call, "-", call, text}, [&](camera_state& state) {
        speed = state.speed;
        if (speed == 0)
            state.clock_us += microseconds;
        return 0;
    });
    if (result != 0 || speed == 0)
        return result;
    const std::int64_t waited = microseconds / speed;
    const timespec duration = {static_cast<time_t>(waited / second),
                               static_cast<long>(waited % second * 1000)};
    return nanosleep(&duration, nullptr);
}

} // namespace

INTERPOSE unsigned int sleep(unsigned int seconds) {
    if (!on_camera())
        return NEXT(sleep)(seconds);
    return pause_for("sleep", seconds * second) == 0 ? 0 : seconds;
}

INTERPOSE int usleep(useconds_t useconds) {
    return on_camera() ? pause_for("usleep", useconds) : NEXT(usleep)(useconds);
}

INTERPOSE int select(int nfds, fd_set* readfds, fd_set* writefds, fd_set* exceptfds,
                     timeval* timeout) {
    const bool only_waits = nfds == 0 && timeout != nullptr;
    if (!on_camera() || !only_waits)
        return NEXT(select)(nfds, readfds, writefds, exceptfds, timeout);
    const timeval wait = *timeout;
    *timeout = {}; // the kernel leaves there what was not waited
    return pause_for("select", wait.tv_sec * second + wait.tv_usec);
}

INTERPOSE int clock_gettime(clockid_t clock_id, timespec* tp) noexcept {
    if (!on_camera() || clock_id != CLOCK_MONOTONIC_RAW)
        return NEXT(clock_gettime)(clock_id, tp);
    const std::int64_t now = camera_time(*locked_camera());
    *tp = {static_cast<time_t>(now / second), static_cast<long>(now % second * 1000)};
    return 0;
}
