// SPDX-License-Identifier: MIT
// Where the camera is on the air: the network that it joined, and its own.

#pragma once

#include "adapter.h"
#include "answer.h"

/// @return {interface, ssid, bssid, security, signal_dbm or signal_percent, channel, address}; null
///         when no network is joined. What is not told is null.
answer station_of(const adapter& found);

/// @return {interface, ssid, channel, stations {count, addresses}}; null when it is not up. What is
///         not told is null.
answer access_point_of(const adapter& found);

/// @return its signal from 0 to 100; -1 when it is not told.
int signal_share(const answer& station);

/// @return its signal with the unit, "-" when it is not told.
std::string signal_text(const answer& station);
