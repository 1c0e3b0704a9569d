// SPDX-License-Identifier: MIT
// What the driver answers, changed on its way to the library, or a driver of the test's own.

#pragma once

#include <functional>

#include <net/if.h>
#include <sys/socket.h>

#include <linux/wireless.h>

/// Called after the camera's driver, with the request and its result. What it returns is what ioctl() returns.
/// Set by a test, and unset again when the test ends.
extern std::function<int(unsigned long number, iwreq& request, int result)> driver_hook;

/// Called instead of the camera's driver, and set and unset likewise.
extern std::function<int(unsigned long number, iwreq& request)> other_driver;
