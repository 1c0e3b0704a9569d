#pragma once

// The camera's network interfaces, whichever radio they belong to.

#include "sim/camera_state.h"

constexpr int no_interface = -1;

/// @return the interface's number, or no_interface.
int find_interface(const camera_state& state, const std::string& name);

/// Brings an interface up or down.
void bring(camera_state& state, int interface, bool up);

/// @return the access point that the interface is joined to, or null.
const access_point* joined(const camera_state& state, int interface);
