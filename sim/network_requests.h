#pragma once

// The ioctl requests that the kernel and the Wi-Fi drivers answer.

#include "sim/crossing.h"

struct iwreq;

/// @return whether the code belongs to network interfaces at all.
bool is_network_request(unsigned long code);

crossing describe_request(unsigned long code, const iwreq* request);

/// @return 0 or a negative errno.
int answer_request(camera_state& state, unsigned long code, iwreq* request);

/// The MediaTek driver's private "set" request.
/// @return 0 or a negative errno.
int set_private(camera_state& state, int interface, const std::string& text);
