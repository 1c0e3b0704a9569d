// SPDX-License-Identifier: MIT
// Lists of networks, drawn to fit where they are shown.

#pragma once

#include <string>

#include "answer.h"
#include "display.h"

/// @param networks with name (null when hidden), bssid, channel, band, security and a signal.
/// @param all whether it is the list of every access point: then the BSSID matters most.
std::string draw_networks(const answer& networks, bool all, const display& display);
