// SPDX-License-Identifier: MIT
// Requests for what is stored.

#pragma once

#include <string>

#include "libwlan/settings.h"
#include "mode_request.h"

/// Each reads the store for what to look for.
/// @throws failure, for the reason "store_failed".
mode_request stored_access_point();
mode_request stored_station();
mode_request stored_repeater();

/// The network to join at the next start.
struct station_record {
    std::string ssid;
    auth_from_cam auth = AUTH_OPEN;
    enc_from_cam enc = ENC_NONE;
    std::string key = {};
    std::string bssid = {}; ///< empty or all zero: any
    int channel = 0;        ///< 0: any
    int key_index = 1;
    bool enabled = true;

    station_record() = default;
    station_record(const station_record&) = delete;
    station_record& operator=(const station_record&) = delete;

    /// Wipes the key.
    ~station_record();
};

/// Stores it, and nothing else.
/// @throws failure, for the reason "store_failed", when it was not.
void store_station(const station_record& station);

/// @return whether a protected network of this name is stored to be joined.
bool is_stored_as_protected(const std::string& ssid);
