// SPDX-License-Identifier: MIT
// Scenes: JSON texts that say what is plugged into a camera and what is in the air around it.

#pragma once

#include <stdexcept>
#include <string>

/// Says what is wrong with a scene, and where in it.
struct wrong_scene : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Makes the camera of a scene in a scratch folder, in place of one that was there.
/// @throw wrong_scene, or another std::exception that says what is wrong with the folder.
void make_camera(const std::string& text, const std::string& scratch);

/// @return what is in a file; nothing, and the reason in errno, when it cannot be read.
std::string read_text(const std::string& path);
