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
    std::string name;        ///< as typed, with \\xHH for bytes as answers show them
    std::string ssid_hex;
    std::string auth_word;
    std::string enc_word;
    std::string key_file;

    // What settle_name() and settle() make of them:
    std::string ssid;
    bool has_key = false; ///< from a file or an option
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

/// @throws CLI::ParseError for a name that cannot be.
void settle_name(network_options& network);

/// Reads the key from its file.
/// @throws failure when it cannot be read, CLI::ParseError for one that fits no cipher.
void settle_key(network_options& network);

/// @return whether nothing says how the network is protected.
bool says_no_security(const network_options& network);

/// Checks the options against each other, fills in what was left out, and asks for the key
/// on the terminal.
/// Name and key are settled already.
/// @throws CLI::ParseError for what cannot work.
void settle(network_options& network);
