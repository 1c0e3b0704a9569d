// SPDX-License-Identifier: MIT
// The stations of the camera's access point, and what hostapd keeps of its configuration.

#pragma once

#include <cstdint>
#include <string>

#include "vcamera/model/air.h"

struct camera_state;

struct visitor {
    std::uint8_t address[6];
    std::int8_t signal;    // dBm
    std::int64_t after;    // the access point's start, in microseconds
    std::int64_t comes_at; // by the camera's clock; 0 while there is no access point
    std::uint8_t is_there;
};

struct hosted_network {
    char ssid[AIR_SSID_MAX + 1];
    std::uint8_t ssid_length;
    std::int32_t channel;
    std::int32_t wpa; // 1 for WPA, 2 for WPA2, 3 for both
    char group[16];   // ciphers, as hostapd names them
    char rsn_pairwise[16];
    char wpa_pairwise[16];
};

/// The access point starts or ends.
void expect_visitors(camera_state& state);
void dismiss_visitors(camera_state& state);

/// When the next one comes; 0 for never.
std::int64_t visitors_due(const camera_state& state);
void advance_visitors(camera_state& state, std::int64_t now);

int count_visitors(const camera_state& state);

/// @param previous null for the first one.
/// @return the next one that is there, or null.
const visitor* next_visitor(const camera_state& state, const visitor* previous);

/// @return the one of an address who is there, or null.
const visitor* find_visitor(const camera_state& state, const std::string& address);

int seconds_of_visit(const camera_state& state, const visitor& visitor);
