// SPDX-License-Identifier: MIT
// The requests of Wireless Extensions about the network that an interface is joined to or serves.

#pragma once

#include "vcamera/model/camera_state.h"

struct iwreq;

/// @return 0 or a negative errno.
int give_essid(const camera_state& state, int interface, iwreq& request);

int give_mode(const camera_state& state, int interface, iwreq& request);

/// What a Realtek station receives.
int give_realtek_statistics(const camera_state& state, int interface, iwreq& request);

/// @param max_quality the best that the driver tells
int give_range(int max_quality, iwreq& request);
