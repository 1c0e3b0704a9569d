// SPDX-License-Identifier: MIT
// The daemons of the camera. Each reads its configuration once, at start, as strictly as the real
// one (hostapd_settings.h and its like), and is a process of its own from then on: its pid file
// appears a moment after the start has returned, and it needs a moment to end.

#pragma once

#include "vcamera/model/programs.h"

int hostapd(camera_state& state, const words& command, program_output& output);
int wpa_supplicant(camera_state& state, const words& command, program_output& output);
int udhcpd(camera_state& state, const words& command, program_output& output);

/// Above every number that the host's kernel gives to a process.
constexpr int first_daemon_pid = 4194304;

/// @return 0 or a negative errno, as the kernel answers kill().
int signal_daemon(camera_state& state, int pid, int signal);

/// Ends a daemon as a signal or a command asks it to.
void terminate_daemon(camera_state& state, fake_daemon& daemon);

/// Does what the daemons and the air had to do until the present time of the camera's clock.
void advance_daemons(camera_state& state);

/// When they next have something to do; 0 for never.
std::int64_t daemons_due(const camera_state& state);
