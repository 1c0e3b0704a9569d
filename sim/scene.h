#pragma once

// Scenes: JSON texts that say what is plugged into a camera and what is in the air around it.

#include <string>

/// Makes the camera of a scene in a scratch folder, in place of one that was there.
/// @throw std::exception that says what is wrong with the scene, or with the folder.
void make_camera(const std::string& text, const std::string& scratch);

/// @return what is in a file; nothing when it cannot be read.
std::string read_text(const std::string& path);
