// SPDX-License-Identifier: MIT
// What happens to every intercepted call: it locks the camera's state, meets the scene's faults, is
// answered, and leaves a line in the journal.

#pragma once

#include <functional>
#include <string>

#include "vcamera/model/camera_state.h"

struct intercepted_call {
    const char* call;         // by which faults know it
    std::string subject;      // interface, path, program, pid or "-"
    std::string request;      // what is asked of it
    std::string text;         // with what
    std::string length = "-"; // that a private request gave
};

/// For calls that are not the camera's to answer: only an injected fault leaves a line.
/// @return whether it fails, with errno set.
bool injects_fault(const intercepted_call& call);

/// @param answer gives 0 or more, or a negative errno.
/// @return as a libc call: the answer, or -1 with errno set.
int intercept(const intercepted_call& call, const std::function<int(camera_state&)>& answer);
