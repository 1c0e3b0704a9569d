// SPDX-License-Identifier: MIT
// How a function of libc is interposed. Each one asks whether the call is for the camera, and
// otherwise passes it on to the next definition.

#pragma once

#include <dlfcn.h>

#include "vcamera/model/camera_state.h"

#define INTERPOSE extern "C" __attribute__((visibility("default")))

/// The definition that the interposed one hides: libc's.
template <typename Function>
Function* next_definition(Function* /*like*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define NEXT(name) next_definition(::name, #name)

inline bool on_camera() {
    return scratch_folder() != nullptr;
}
