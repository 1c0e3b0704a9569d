#pragma once

// The fixed paths that belong to the camera and not to the host.

#include <string>

bool belongs_to_camera(const std::string& path);
