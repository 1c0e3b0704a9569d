// SPDX-License-Identifier: MIT
// The kernel's tables of network interfaces, /proc/net/dev and /proc/net/wireless.

#pragma once

#include <string>

#include "vcamera/model/camera_state.h"

struct radio_quality {
    int link;  // percent
    int level; // dBm
    int noise; // dBm
};

/// Writes both below `scratch`.
void show_network_tables(const camera_state& state, const radio_quality& quality,
                         const std::string& scratch);
