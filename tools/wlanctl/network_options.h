// SPDX-License-Identifier: MIT
// The options that describe a network.

#pragma once

#include <string>

#include "libwlan/settings.h"

namespace CLI {
class App;
}

/// One network as the command line describes it.
struct network_options {
    network_options() = default;
    network_options(const network_options&) = delete;
    network_options& operator=(const network_options&) = delete;

    /// Wipes the key.
    ~network_options();

    std::string name_option; ///< the option that gives the name
    std::string ssid;
    std::string auth_word;
    std::string enc_word;
    std::string key_file;

    // What settle() makes of them:
    auth_from_cam auth = AUTH_OPEN;
    enc_from_cam enc = ENC_NONE;
    std::string key;
};

/// Adds the options for a network.
/// @param whose network it is, for the help.
/// @param name_option the option, or the positional argument, that gives the name.
/// @param prefix what the other options begin with: "--", or "--ap-" beside a second network.
void add_network_options(CLI::App& command, network_options& network, const std::string& whose,
                         const std::string& name_option, const std::string& prefix = "--");

/// Checks the options against each other, fills in what was left out, and reads the key.
/// @throws CLI::ParseError for what cannot work, failure for a key that cannot be read.
void settle(network_options& network);
