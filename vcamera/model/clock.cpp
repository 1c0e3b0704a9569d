// SPDX-License-Identifier: MIT
// The camera's clock.

#include "vcamera/model/clock.h"

#include <chrono>

namespace {

std::int64_t host_time() {
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

std::int64_t camera_time(const camera_state& state) {
    if (state.speed == 0)
        return state.clock_us;
    return state.clock_us + (host_time() - state.host_us) * state.speed;
}

void set_speed(camera_state& state, int speed) {
    state.clock_us = camera_time(state);
    state.host_us = host_time();
    state.speed = speed;
}
