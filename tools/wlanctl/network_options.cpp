// SPDX-License-Identifier: MIT
// The options that describe a network.

#include "network_options.h"

#include <cctype>
#include <cstring>

#include <CLI/CLI.hpp>

#include "key_input.h"
#include "security.h"

namespace {

constexpr std::size_t longest_name = 32;

int digit_of(char c) {
    constexpr char digits[] = "0123456789abcdef";
    const char* place = std::strchr(digits, std::tolower(static_cast<unsigned char>(c)));
    return c == '\0' || place == nullptr ? -1 : static_cast<int>(place - digits);
}

/// @return the byte that two hexadecimal digits stand for, -1 when they are none.
int byte_of(const std::string& text, std::size_t place) {
    if (place + 2 > text.size() || digit_of(text[place]) < 0 || digit_of(text[place + 1]) < 0)
        return -1;
    return digit_of(text[place]) * 16 + digit_of(text[place + 1]);
}

/// Takes back what escape() does.
std::string unescaped(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int byte = text.compare(i, 2, "\\x") == 0 ? byte_of(text, i + 2) : -1;
        bytes += byte < 0 ? text[i] : static_cast<char>(byte);
        i += byte < 0 ? 0 : 3;
    }
    return bytes;
}

std::string from_hex(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int byte = byte_of(text, i);
        if (byte < 0)
            throw CLI::ValidationError("--ssid-hex", "two hexadecimal digits for each byte");
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string ssid_problem(const std::string& text) {
    if (text.empty() || text.size() > longest_name)
        return "a network name is 1 to 32 bytes long";
    if (text.find('\0') != std::string::npos)
        return "no adapter joins a network whose name holds a byte 00";
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
    auto* name = command.add_option(name_option, network.name,
                                    "Name of " + whose + "; \\xHH is a byte, as in a survey");
    command.add_option(prefix + "ssid-hex", network.ssid_hex, "The name's bytes in hexadecimal")
        ->type_name("HEX")
        ->excludes(name);
    command
        .add_option(prefix + "auth", network.auth_word,
                    "Authentication; without it and a cipher what a survey tells")
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

void settle_name(network_options& network) {
    if (network.name.empty() && network.ssid_hex.empty())
        throw CLI::RequiredError(network.name_option + " or --stored");
    network.ssid = network.ssid_hex.empty() ? unescaped(network.name) : from_hex(network.ssid_hex);
    const std::string problem = ssid_problem(network.ssid);
    if (!problem.empty())
        throw CLI::ValidationError(network.name_option, problem);
}

bool says_no_security(const network_options& network) {
    return network.auth_word.empty() && network.enc_word.empty();
}

void settle_key(network_options& network) {
    if (!network.key_file.empty())
        read_key_file(network.key_file, network.key);
    network.has_key = !network.key.empty() || !network.key_file.empty();
    const std::string problem = key_problem(ENC_AES, network.key);
    if (network.has_key && says_no_security(network) && !problem.empty() &&
        !key_problem(ENC_WEP, network.key).empty())
        throw CLI::ValidationError(network.name_option, problem);
}

void settle(network_options& network) {
    const bool has_key = network.has_key;
    const security chosen = choose_security(network.auth_word, network.enc_word, has_key);
    network.auth = chosen.auth;
    network.enc = chosen.enc;
    const std::string name = '"' + network.ssid + '"';
    if (network.enc == ENC_NONE) {
        if (has_key)
            throw CLI::ValidationError(name, "an open network takes no key");
        return;
    }
    if (!has_key)
        prompt_for_key(name, network.key);
    const std::string problem = key_problem(network.enc, network.key);
    if (!problem.empty())
        throw CLI::ValidationError(name, problem);
}
