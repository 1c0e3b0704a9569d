// SPDX-License-Identifier: MIT
// Access points as a MediaTek driver's survey table tells them.

#pragma once

#include <string>
#include <vector>

#include "beacons.h"

/// Has the library survey, and reads the driver's table after it.
/// @param trigger false reads what the driver heard last.
/// @return 0, or -1 when the driver gave no table.
int hear_mediatek(std::vector<beacon>& list, bool trigger);

/// Reads a table of either layout; lines that make no sense are left out.
std::vector<beacon> read_survey_table(const std::string& table);
