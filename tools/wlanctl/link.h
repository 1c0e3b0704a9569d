// SPDX-License-Identifier: MIT
// What the kernel tells of an interface's link.

#pragma once

#include <string>

#include "answer.h"

struct link_state {
    bool associated = false;
    std::string ssid;  ///< empty when it is not told
    std::string bssid; ///< likewise
    int channel = 0;   ///< 0 when it is not told
    answer signal_dbm; ///< null when it is not told
    answer signal_percent;
    std::string address; ///< IPv4; empty without one
};

/// Asks the driver and the kernel afresh; prints nothing and leaves nothing open.
link_state ask_link(const char* interface);

/// The same for what a link is known by: everything but channel and signal.
link_state ask_association(const char* interface);

/// @return the channel of an interface, associated or not; 0 when it is not told.
int ask_channel(const char* interface);

/// @return the name that an interface goes by on the air; empty when it is not told.
std::string ask_ssid(const char* interface);

/// @return whether the text looks like a hardware address.
bool is_address(const std::string& text);

/// Drivers tell a channel by its number or by its frequency in MHz.
int channel_number(int told);
