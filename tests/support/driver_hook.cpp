// SPDX-License-Identifier: MIT
// The ioctl() that a test can change.

#include "tests/support/driver_hook.h"

#include <cstdarg>

#include <dlfcn.h>

std::function<int(unsigned long number, iwreq& request, int result)> driver_hook;
std::function<int(unsigned long number, iwreq& request)> other_driver;

// In front of the virtual camera's.
extern "C" __attribute__((visibility("default"))) int ioctl(int fd, unsigned long number, ...) noexcept {
    va_list arguments;
    va_start(arguments, number);
    auto* request = va_arg(arguments, iwreq*);
    va_end(arguments);
    if (other_driver)
        return other_driver(number, *request);
    static const auto camera = reinterpret_cast<decltype(&ioctl)>(dlsym(RTLD_NEXT, "ioctl"));
    const int result = camera(fd, number, request);
    return driver_hook ? driver_hook(number, *request, result) : result;
}
