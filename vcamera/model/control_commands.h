// SPDX-License-Identifier: MIT
// The commands of the control sockets.

#pragma once

#include <optional>
#include <string>

#include "vcamera/model/camera_state.h"

/// @return the daemon's answer; nothing when it does not know the command.
using command_answer = std::optional<std::string>;

command_answer wpa_supplicant_command(camera_state& state, fake_daemon& daemon,
                                      const std::string& command);
command_answer hostapd_command(camera_state& state, fake_daemon& daemon,
                               const std::string& command);
