// SPDX-License-Identifier: MIT
// The interposed functions of time, which is the camera's.

#include "vcamera/interpose/time_calls.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include <unistd.h>

#include "vcamera/interpose/intercepted_call.h"
#include "vcamera/interpose/interposer.h"
#include "vcamera/model/clock.h"

namespace {

constexpr std::int64_t second = 1000000;

/// Rounded up, as the kernel never waits for less.
std::int64_t microseconds(const timespec& time) {
    return time.tv_sec * second + (time.tv_nsec + 999) / 1000;
}

} // namespace

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
    return NEXT(nanosleep)(&duration, nullptr);
}

INTERPOSE unsigned int sleep(unsigned int seconds) {
    if (!on_camera())
        return NEXT(sleep)(seconds);
    return pause_for("sleep", seconds * second) == 0 ? 0 : seconds;
}

INTERPOSE int usleep(useconds_t useconds) {
    return on_camera() ? pause_for("usleep", useconds) : NEXT(usleep)(useconds);
}

INTERPOSE int nanosleep(const timespec* requested_time, timespec* remaining) {
    const bool fits = requested_time != nullptr && requested_time->tv_sec >= 0 &&
                      requested_time->tv_nsec >= 0 && requested_time->tv_nsec < 1000 * second;
    if (!on_camera() || !fits)
        return NEXT(nanosleep)(requested_time, remaining);
    return pause_for("nanosleep", microseconds(*requested_time));
}

/// Until a time of day is the host's to wait.
INTERPOSE int clock_nanosleep(clockid_t clock_id, int flags, const timespec* req, timespec* rem) {
    if (!on_camera() || (flags & TIMER_ABSTIME) != 0)
        return NEXT(clock_nanosleep)(clock_id, flags, req, rem);
    return nanosleep(req, rem) == 0 ? 0 : errno;
}

INTERPOSE int clock_gettime(clockid_t clock_id, timespec* tp) noexcept {
    if (!on_camera() || clock_id != CLOCK_MONOTONIC_RAW)
        return NEXT(clock_gettime)(clock_id, tp);
    const std::int64_t now = camera_time(*locked_camera());
    *tp = {static_cast<time_t>(now / second), static_cast<long>(now % second * 1000)};
    return 0;
}
