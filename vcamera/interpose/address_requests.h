// SPDX-License-Identifier: MIT
// The requests about the addresses of interfaces.

#pragma once

#include "vcamera/model/camera_state.h"

struct ifconf;
struct ifreq;
struct sockaddr;

bool is_address_request(unsigned long code);

/// @return 0 or a negative errno.
int answer_address_request(camera_state& state, int interface, unsigned long code, ifreq& request);

/// Lists the interfaces that have an address.
int list_addresses(const camera_state& state, ifconf& request);

/// @return as a sockaddr_in.
sockaddr socket_address(std::uint32_t address);

/// All interfaces are in networks of 256 addresses.
std::uint32_t netmask();
std::uint32_t broadcast_of(std::uint32_t address);
