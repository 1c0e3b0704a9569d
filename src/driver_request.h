// SPDX-License-Identifier: MIT
// How an entry point runs one request: a fresh driver object, init, one operation, release.

#pragma once

namespace libwlan {

/// Runs `operation` on a fresh driver object, which `settings` initialize. Only an object whose
/// operation succeeded is released: the socket of a failed one stays open, which is part of the
/// interface.
/// @return 0 or -1.
template <typename Driver, typename Operation, typename... Settings>
[[gnu::always_inline]] inline int run_request(const Operation& operation, Settings... settings) {
    Driver radio;
    if (radio.init(settings...) != 0 || operation(radio) != 0)
        return -1;
    radio.release();
    return 0;
}

} // namespace libwlan
