#pragma once

// The daemons that the camera pretends to run. Each reads its configuration as strictly as the real
// one, once, at start.

#include "sim/programs.h"

int hostapd(camera_state& state, const words& command, program_output& output);
int wpa_supplicant(camera_state& state, const words& command, program_output& output);
int udhcpd(camera_state& state, const words& command, program_output& output);

/// Above every number that the host's kernel gives to a process.
constexpr int first_daemon_pid = 4194304;

/// @return 0 or a negative errno, as the kernel answers kill().
int signal_daemon(camera_state& state, int pid, int signal);
