// SPDX-License-Identifier: MIT
// One request at a time, over all processes.

#pragma once

#include <string>

#include "answer.h"
#include "base/unique_fd.h"

/// Held for as long as it lives, and by the child that carries the request out. From here on the
/// ending signals cancel the request.
class request_lock {
public:
    /// @param command that is carried out, for whoever asks.
    /// @param patience how many seconds to wait for the request that holds it.
    /// @throws failure, for the reason "busy" with that request, or "cancelled".
    request_lock(const std::string& command, int patience);

private:
    libwlan::unique_fd file_;
};

/// @return the request that is being carried out, {pid, command}; null when there is none.
answer running_request();
