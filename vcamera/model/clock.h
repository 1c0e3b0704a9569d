// SPDX-License-Identifier: MIT
// The camera's clock. At speed 0 only sleeping moves it; else it runs that many times faster than
// the host's.

#pragma once

#include <cstdint>

#include "vcamera/model/camera_state.h"

std::int64_t camera_time(const camera_state& state);

/// Goes on from the present time at another speed.
void set_speed(camera_state& state, int speed);
