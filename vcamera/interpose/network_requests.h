// SPDX-License-Identifier: MIT
// The ioctl requests that the kernel and the Wi-Fi drivers answer.

#pragma once

#include "vcamera/interpose/intercepted_call.h"

struct iwreq;

/// @return whether the code is one of routes, addresses, interfaces and their drivers.
bool is_network_request(unsigned long code);

intercepted_call describe_request(unsigned long code, const iwreq* request);

/// @param fd through which the request comes; only sockets take it.
/// @return 0 or a negative errno.
int answer_request(camera_state& state, int fd, unsigned long code, iwreq* request);

/// The MediaTek driver's private "set" request.
/// @param text without a NUL.
/// @return 0 or a negative errno.
int set_private(camera_state& state, int interface, const std::string& text);

/// Brings /proc/net/wireless up to date when that is the path.
void show_figures(const camera_state& state, const char* path);
