#pragma once

// How every entry point runs one request: a fresh driver object, init, one operation, release.

#include "libwlan/wext.h"
#include "libwlan/wlan.h"

/// Runs `operation` on `driver` once `ready` is 0.
/// @return 0 or -1. Only a request that succeeded is released: the socket of a failed one stays
/// open.
template <typename Driver, typename Operation>
int run_request(Driver& driver, int ready, const Operation& operation) {
    if (ready != 0 || operation(driver) != 0)
        return -1;
    driver.release();
    return 0;
}

/// Runs one request on a MediaTek adapter.
template <typename Operation>
int on_mtk(const Operation& operation) {
    wlan driver;
    return run_request(driver, driver.init(), operation);
}

/// Runs one mode request on a Realtek adapter, stopping a running wpa_supplicant first.
template <typename Operation>
int on_realtek(const Operation& operation) {
    wext driver;
    return run_request(driver, driver.init(true), operation);
}
