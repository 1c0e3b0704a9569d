// SPDX-License-Identifier: MIT
// The paths that belong to the camera and not to the host.

#pragma once

#include <string_view>

/// @param path absolute; one with ".." in it never belongs to the camera.
bool belongs_to_camera(std::string_view path);
