// SPDX-License-Identifier: MIT
// The link as it changes, drawn in a terminal or told a line at a time.

#pragma once

#include <deque>
#include <string>
#include <vector>

#include "answer.h"
#include "display.h"

/// What one look shows.
struct live_state {
    int seconds = 0;     ///< since the first one
    answer station;      ///< as station_of() tells it
    answer access_point; ///< as access_point_of() tells it
    std::string problem; ///< why nothing can be told; empty when all is well
};

/// @return the state in one line.
std::string line_of(const live_state& state);

/// The latest signals, of 0 to 100 each; -1 where there was no link.
class signal_history {
public:
    void add(int share);

    /// @param rows of text; the newest signal is at the right end.
    /// @param in_dbm what the axis counts.
    std::vector<std::string> draw(const display& display, std::size_t rows, bool in_dbm) const;

private:
    std::deque<int> shares_;
};

/// @return the lines that a terminal shows, none wider than it.
std::vector<std::string> draw_state(const live_state& state, const signal_history& history,
                                    const display& display);
