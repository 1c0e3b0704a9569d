// SPDX-License-Identifier: MIT
// Networks to measure with.

#pragma once

#include "vcamera/model/air.h"

/// So many networks, AIR_MAX at most, as an office block has them: each has a name of its own.
air networks(int64_t count);
