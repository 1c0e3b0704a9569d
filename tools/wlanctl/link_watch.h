// SPDX-License-Identifier: MIT
// Looking at a station's link, on either family.

#pragma once

#include "watch.h"

/// Looks whether the interface is linked to the target, with an address when one is asked for.
/// @param linked receives whether it was at this look; the first time is told as progress.
sight look_at_link(const char* interface, const target& target, bool address, bool& linked);
