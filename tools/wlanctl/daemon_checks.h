// SPDX-License-Identifier: MIT
// What wlanctl doctor looks for in the daemons that run, and in what they are told.

#pragma once

#include <vector>

#include "answer.h"

/// One row of what doctor tells.
answer checked(const std::string& what, const answer& found, const answer& breaks);

/// @return whether the file's bytes have this text: what a program knows cannot be asked.
bool file_names(const std::string& path, const std::string& text);

/// Of a Realtek camera: whether the control sockets of the daemons that run answer, whether hostapd
/// knows the driver of its configuration, and whether 40 MHz fit on the channel.
std::vector<answer> check_daemons();

/// Descriptors in use by the daemons, and by programs that hold this library.
std::vector<answer> check_descriptors();
