// SPDX-License-Identifier: MIT
// What a scene has the driver answer in place of what it hears.

#pragma once

#include <optional>
#include <string>

/// @param name "survey", "scan", "profile" or "register".
std::optional<std::string> scene_answer(const std::string& name);
