// SPDX-License-Identifier: MIT
// The scan requests of Wireless Extensions, as the Realtek driver answers them.

#pragma once

#include "vcamera/model/camera_state.h"

struct iwreq;

/// @return 0 or a negative errno.
int answer_scan_request(camera_state& state, int interface, unsigned long code, iwreq& request);
