// SPDX-License-Identifier: MIT
// The addresses of the camera's interfaces: IPv4 addresses that they are set, or are given after
// they have joined a network, and those of the hardware.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct camera_state;

/// In network byte order; 0 for none.
struct interface_addresses {
    std::uint32_t set;     // by a program
    std::uint32_t offered; // by the network, as the scene has it
    std::int64_t after;    // so many microseconds after the interface has joined
    std::uint8_t joined;
    std::int64_t joined_at; // by the camera's clock
};

/// @return in network byte order; 0 for none.
std::uint32_t address_of_interface(const camera_state& state, int interface);

/// As text.
std::optional<std::string> interface_address(const camera_state& state, int interface);

/// Notes who has joined or lost its network until now.
void advance_addresses(camera_state& state, std::int64_t now);

void copy_hardware_address(int interface, std::uint8_t (&address)[6]);
std::string hardware_address_text(int interface);
