// SPDX-License-Identifier: MIT
// The camera's network interfaces, whichever radio they belong to.

#pragma once

#include "vcamera/model/camera_state.h"

constexpr int no_interface = -1;

/// @return the interface's number, or no_interface.
int find_interface(const camera_state& state, const std::string& name);

/// The kernel's numbers of interfaces begin with 1.
constexpr int index_of(int interface) {
    return interface + 1;
}

/// @return the name, or null when no interface has this number of the kernel's.
const char* name_of_index(const camera_state& state, unsigned index);

/// @return whether the interface has joined a network, and has the keys that it takes.
bool carries_data(const camera_state& state, int interface);

/// @return IFF_UP and the others.
short interface_flags(const camera_state& state, int interface);

/// Brings an interface up or down.
void bring(camera_state& state, int interface, bool up);

/// @return the access point that the interface is joined to, or null.
const access_point* joined(const camera_state& state, int interface);
