// SPDX-License-Identifier: MIT
// Watching what becomes of a request that the library has answered with 0.

#pragma once

#include <memory>
#include <string>

#include "answer.h"
#include "reasons.h"

/// What one look shows.
struct sight {
    enum class state { pending, reached, lost };
    state now = state::pending;
    setback why = {reason::timed_out}; ///< when it is lost
    answer found = answer::object();   ///< when it is reached
};

class watch {
public:
    watch() = default;
    virtual ~watch() = default;
    watch(const watch&) = delete;
    watch& operator=(const watch&) = delete;

    /// Looks, without waiting.
    virtual sight look() = 0;

    /// When time is up: the likely reason.
    virtual setback give_up() = 0;

    /// How many seconds that takes.
    virtual int last_words() const { return 0; }
};

/// The network to join, as far as it is known.
struct target {
    std::string ssid;
    bool is_protected = false;
    bool was_heard = false; ///< by a survey
};

/// @param address whether it is reached with an IPv4 address only.
std::unique_ptr<watch> watch_join(const target& target, bool mediatek, bool address);

/// @param dhcp_server whether a DHCP server belongs to it.
std::unique_ptr<watch> watch_access_point(const std::string& ssid, bool mediatek, bool dhcp_server);

/// Looks until something is decided, for so many seconds, or until the command is asked to end.
sight await(watch& watch, int seconds);
