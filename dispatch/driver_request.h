#pragma once

// How every entry point runs one request: a fresh driver object, init, one operation, release.

#include "libwlan/wext.h"
#include "libwlan/wlan.h"

/// Ends a request by its operation's result. Only one that succeeded is released: the socket of a
/// failed one stays open.
/// @return 0 or -1.
template <typename Driver>
int end_request(Driver& driver, int result) {
    if (result != 0)
        return -1;
    driver.release();
    return 0;
}
