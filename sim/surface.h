#pragma once

// How the virtual camera stands in front of a function of libc.

#include <dlfcn.h>

#define SURFACE extern "C" __attribute__((visibility("default")))

/// The next definition of a function that a program also finds here.
template <typename function>
function* next_definition(function* /*like*/, const char* name) {
    return reinterpret_cast<function*>(dlsym(RTLD_NEXT, name));
}
#define NEXT(name) next_definition(::name, #name)
