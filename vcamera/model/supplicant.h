// SPDX-License-Identifier: MIT
// wpa_supplicant's search for its networks, in the steps and with the pauses of wpa_supplicant 2.10
// on a simulated radio of both bands.

#pragma once

#include <cstdint>
#include <string>

#include "vcamera/model/air.h"

struct camera_state;

enum class supplicant_step : std::uint8_t {
    off,          // it does not run
    scanning,     // all channels
    pausing,      // until the next scan, as if that went on
    associating,  // with the access point that a scan came upon
    handshake,    // of keys; the association stands
    completed,    // the network can be used
    backing_off,  // after a refused association
    disconnected, // as it was told
    disabled,     // the interface is down
};

struct wanted_network {
    char ssid[AIR_SSID_MAX + 1];
    char key[AIR_KEY_MAX + 1];
    std::uint8_t security; // of which the access point has one
    std::uint8_t left_out; // by the configuration
    std::int32_t failures;
    std::int64_t disabled_until; // after a failure; 0 otherwise
};

/// Times are microseconds of the camera's clock.
struct supplicant {
    supplicant_step step;
    std::int64_t step_over; // 0 when only others end it
    std::int64_t scan_over; // of a scan that was asked for in another step; 0 without
    std::uint8_t scanned;
    std::int32_t network; // the one that it tries or uses, by its number
    std::int32_t target;  // number, from 1, of that one's access point; 0 without
    std::int32_t refusals;
    std::int32_t networks;
    wanted_network wanted[8];
};

/// Begins to search for what stands in `supplicant.wanted`.
void supplicant_start(camera_state& state);

/// Leaves its network and ends.
void supplicant_stop(camera_state& state);

/// Follows the interface, which goes down or comes up.
void supplicant_bring(camera_state& state, bool up);

void supplicant_disconnect(camera_state& state);
void supplicant_reconnect(camera_state& state, bool even_joined);

/// @return whether a scan was begun; not while another one runs.
bool supplicant_scan(camera_state& state);

/// @return whether one of its scans, or an association, keeps the radio busy.
bool supplicant_busy(const supplicant& supplicant);

/// When something is due; 0 for never.
std::int64_t supplicant_due(const supplicant& supplicant);

/// Does what is due at this time.
void supplicant_advance(camera_state& state, std::int64_t now);

/// The access point that it is joined to has gone.
void supplicant_lose(camera_state& state, std::int64_t now);

/// @return the state's name as the daemon tells it.
std::string supplicant_state_name(const camera_state& state);
