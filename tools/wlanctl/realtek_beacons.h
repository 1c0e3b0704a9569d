// SPDX-License-Identifier: MIT
// Access points as a Realtek driver's scan tells them.

#pragma once

#include <vector>

#include "beacons.h"

/// Scans, and waits for the results.
/// @return 0, or -1 when the driver gave none.
int hear_realtek(std::vector<beacon>& list);
