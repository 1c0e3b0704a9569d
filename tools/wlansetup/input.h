// SPDX-License-Identifier: MIT
// What comes in through HTTP, read and judged: host, origin, and the page's requests. Pure.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

constexpr std::size_t longest_body = 2048;
constexpr std::size_t longest_ssid = 32;

/// Security as wlanctl's --auth and --enc take it.
struct security {
    std::string auth;
    std::string enc;

    [[nodiscard]] bool needs_key() const { return enc != "none"; }
};

/// A network's name and key, as the page hands them over. Overwrites the key when it leaves.
struct join_order {
    join_order() = default;
    join_order(const join_order&) = default;
    join_order(join_order&&) = default;
    join_order& operator=(const join_order&) = default;
    join_order& operator=(join_order&&) = default;
    ~join_order() { forget_key(); }

    void forget_key();

    std::string ssid; ///< 1 to 32 bytes of any kind
    std::string key;
    bool hidden = false; ///< its name was typed
    security how;
};

/// A network in the air, for the page.
struct network {
    std::string ssid; ///< bytes
    std::string name; ///< as wlanctl prints it, safe to show
    std::string security_text;
    int bars = 0; ///< 0 to 4
    int channel = 0;
};

/// @param host the Host header, with a port where it is not 80.
/// @param names lower-case names and addresses that are this camera's, without port.
bool is_own_host(std::string_view host, const std::vector<std::string>& names, int port);

/// Whether a request that changes something may come from the page at `origin`; programs name none,
/// browsers always do.
bool is_own_origin(std::string_view origin, const std::vector<std::string>& names, int port);

/// Takes back wlanctl's \xHH.
std::string unescape(std::string_view text);

std::string to_hex(std::string_view bytes);

/// @return nothing for what is no even number of hexadecimal digits.
std::optional<std::string> from_hex(std::string_view digits);

/// @return the body's object, null when it is none.
nlohmann::json read_object(std::string_view body);

/// Reads {"ssid_hex" or "name", "key"}.
/// @param problem a word for the page, when nothing is returned.
std::optional<join_order> read_join(const nlohmann::json& object,
                                    const std::vector<network>& networks, std::string& problem);

/// @return a word for what is wrong with the key, or "".
const char* key_problem(const security& how, std::string_view key);

/// Reads what survey tells of security, as "WPA2-PSK AES".
security security_of(std::string_view text);

/// Reads the networks of a survey's outcome: one for each name, the strongest first, at most 64.
std::vector<network> read_networks(const nlohmann::json& outcome);

/// Compares in a time that does not tell how much of it is right.
bool is_code(std::string_view told, std::string_view code);
