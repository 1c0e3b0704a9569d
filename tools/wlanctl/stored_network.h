// SPDX-License-Identifier: MIT
// Requests for what is stored.

#pragma once

#include <string>

#include "mode_request.h"

/// Each reads the store for what to look for.
/// @throws failure, for the reason "store_failed".
mode_request stored_access_point();
mode_request stored_station();
mode_request stored_repeater();

/// @return whether a protected network of this name is stored to be joined.
bool is_stored_as_protected(const std::string& ssid);
