// SPDX-License-Identifier: MIT
// How full the channels are.

#pragma once

#include <string>
#include <vector>

#include "answer.h"
#include "beacons.h"
#include "display.h"

/// @return {channels [channel, band, networks, overlapping, strongest_dbm or strongest_percent],
///         clearest}: those of 2.4 GHz, and of 5 GHz the ones with networks. What overlaps are
///         networks on other channels whose 22 MHz reach into this one; clearest is that of 1, 6
///         and 11 into which the least reaches, weighed by strength.
answer load_of_channels(const std::vector<beacon>& list);

/// @param load as load_of_channels() gives it.
std::string draw_channels(const answer& load, const display& display);
