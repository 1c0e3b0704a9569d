// SPDX-License-Identifier: MIT
// The options that describe a network.

#include "network_options.h"

#include <cstring>

#include <CLI/CLI.hpp>

#include "key_input.h"
#include "security.h"

namespace {

std::string ssid_problem(const std::string& text) {
    if (text.empty() || text.size() > 32)
        return "a network name is 1 to 32 bytes long";
    // It would start a line of its own in the daemon's configuration file.
    return text.find('\n') == std::string::npos ? "" : "a network name holds no line feed";
}

} // namespace

network_options::~network_options() {
    key.resize(key.capacity());
    explicit_bzero(key.data(), key.size());
}

void add_network_options(CLI::App& command, network_options& network, const std::string& whose,
                         const std::string& name_option, const std::string& prefix) {
    network.name_option = name_option;
    command.add_option(name_option, network.ssid, "Name of " + whose)->check(ssid_problem);
    command
        .add_option(prefix + "auth", network.auth_word,
                    "Authentication; without it or a cipher wpa2psk with a key, else open")
        ->check(CLI::IsMember(auth_words()));
    command.add_option(prefix + "enc", network.enc_word, "Cipher; else the authentication's usual")
        ->check(CLI::IsMember(enc_words()));
    auto* file = command
                     .add_option(prefix + "key-file", network.key_file,
                                 "File that holds the key; '-' is standard input. Without a key,\n"
                                 "an authentication or cipher that needs one asks on the terminal")
                     ->option_text("FILE");
    command
        .add_option(prefix + "key", network.key,
                    "The key itself; the process list shows it, so prefer a file or the prompt")
        ->excludes(file);
}

void settle(network_options& network) {
    if (network.ssid.empty())
        throw CLI::RequiredError(network.name_option + " or --stored");
    const bool has_key = !network.key.empty() || !network.key_file.empty();
    const security chosen = choose_security(network.auth_word, network.enc_word, has_key);
    network.auth = chosen.auth;
    network.enc = chosen.enc;
    const std::string name = '"' + network.ssid + '"';
    if (network.enc == ENC_NONE) {
        if (has_key)
            throw CLI::ValidationError(name, "an open network takes no key");
        return;
    }
    if (!network.key_file.empty()) {
        read_key_file(network.key_file, network.key);
    } else if (network.key.empty()) {
        prompt_for_key(name, network.key);
    }
    const std::string problem = key_problem(network.enc, network.key);
    if (!problem.empty())
        throw CLI::ValidationError(name, problem);
}
