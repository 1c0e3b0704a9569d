// SPDX-License-Identifier: MIT
// The sockets of this program that it has connected to a daemon of the camera. On the host they
// stay unconnected: what is sent through them is intercepted, and the answers arrive as they would.

#pragma once

#include <cstdint>

#include "vcamera/interpose/intercepted_call.h"

/// Connects a socket to the daemon that listens at a path of the camera.
/// @return 0 or a negative errno.
int connect_control(camera_state& state, int fd, const char* path);

/// @return whether the descriptor is such a socket.
bool is_control(int fd);

/// Hands a command to the daemon.
/// @return the length, or -1 with errno set.
long send_control(int fd, const void* bytes, std::size_t length);

/// Waits until one of a program's descriptors is ready, while the camera's clock goes on and its
/// daemons tell what they have to tell.
/// @param wait microseconds of the camera's clock; negative waits without end
/// @param ready waits so many of the host's milliseconds, without end when they are negative
/// @return what `ready` gives at last, or 0 when the time is over
int wait_on_camera(std::int64_t wait, const std::function<int(int)>& ready);
