// SPDX-License-Identifier: MIT
// Looking a network up in the air before it is joined.

#pragma once

#include <string>

/// What a survey tells of a network.
struct heard_network {
    bool heard = false;
    bool certain = true;   ///< false when the driver gave no list
    std::string auth = {}; ///< as words for --auth and --enc; empty when the survey's are not known
    std::string enc = {};
    int channel = 0;
};

/// Surveys the air, and tells what of the network is heard as progress.
/// @throws failure when the command is asked to end.
heard_network hear(const std::string& ssid, bool mediatek);
