// SPDX-License-Identifier: MIT
// Requests that set the radio up, and what comes of them.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "adapter.h"
#include "answer.h"
#include "daemons.h"
#include "libwlan/clock.h"
#include "watch.h"

namespace CLI {
class App;
}

struct request_options {
    int wait = 30;     ///< seconds for the outcome; 0 does not wait
    int lock_wait = 5; ///< seconds for another request to end
    bool address = false;
    bool or_ap = false;

    std::uint32_t began = clock_time(); ///< which wraps

    /// @return how many seconds the request has taken.
    int seconds() const;
};

/// Adds --wait and --lock-wait.
void add_request_options(CLI::App& command, request_options& options);

/// Adds --lock-wait alone.
void add_lock_option(CLI::App& command, request_options& options);

/// What a mode is asked to do.
struct mode_request {
    std::string command; ///< for whoever asks what is being done
    std::string what;    ///< for people
    std::function<int()> run;
    std::vector<daemon_process> daemons; ///< that it starts
    bool joins = false;
    target network = {};
    bool opens = false; ///< an access point
    std::string access_point = {};
    bool dhcp_server = false;
};

/// Carries it out and waits for the outcome. Whoever calls holds the request_lock.
/// @throws failure with the reason.
answer carry_out(const mode_request& request, const adapter& found, const request_options& options);

/// Stops the station, or the access point with its DHCP server, within a second.
void stop_station(const adapter& found);
void stop_access_point(const adapter& found);
