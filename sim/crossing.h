#pragma once

// What happens to every call that crosses from a program into the camera: it holds the camera,
// meets the scene's faults, is answered, and leaves a line in the journal.

#include <functional>
#include <string>

#include "sim/camera_state.h"

struct crossing {
    const char* call;         // by which faults know it
    std::string subject;      // interface, path, program, pid or "-"
    std::string request;      // what is asked of it
    std::string text;         // with what
    std::string length = "-"; // that a private request gave
};

/// For calls that the camera has no part in: only a fault that strikes one leaves a line.
/// @return whether it fails, with errno set.
bool meets_fault(const crossing& call);

/// @param answer gives 0 or more, or a negative errno.
/// @return as a libc call: the answer, or -1 with errno set.
int cross(const crossing& call, const std::function<int(camera_state&)>& answer);
