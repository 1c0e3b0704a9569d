// SPDX-License-Identifier: MIT
// Which adapter is plugged in, and its interfaces.

#pragma once

#include <string>
#include <vector>

struct wifi_interface {
    const char* name;
    const char* role;
    bool station;      ///< joins networks, so it can be associated
    std::string state; ///< "up", "down" or "absent"
};

struct adapter {
    bool mediatek; ///< else Realtek
    std::vector<wifi_interface> interfaces;
};

/// Asks again how its interfaces are.
void refresh(adapter& found);

/// @return whether its driver has made any of its interfaces.
bool is_usable(const adapter& found);

/// Asks which adapter is plugged in and how its interfaces are; nothing is changed.
/// @throws failure when there is none, or when its driver has made none of its interfaces.
adapter find_adapter();
