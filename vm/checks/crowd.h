// SPDX-License-Identifier: MIT
// A radio full of neighbours.

#pragma once

/// A radio full of neighbours, each with a long beacon, for as long as this lives.
class crowd {
public:
    static constexpr int size = 32;

    crowd();
    crowd(const crowd&) = delete;
    crowd& operator=(const crowd&) = delete;
    ~crowd();
};

/// @return how many bytes of scan results the driver of "wlan0" holds.
int scan_results_size();
