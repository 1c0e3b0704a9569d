// SPDX-License-Identifier: MIT
// What comes in through HTTP, read and judged.

#include "input.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace {

using nlohmann::json;

constexpr std::size_t most_networks = 64;
constexpr int http_port = 80;

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

int digit_of(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// @return the byte that two hexadecimal digits tell, or -1.
int byte_of(std::string_view digits) {
    if (digits.size() < 2 || digit_of(digits[0]) < 0 || digit_of(digits[1]) < 0)
        return -1;
    return digit_of(digits[0]) * 16 + digit_of(digits[1]);
}

bool is_hex(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return digit_of(c) >= 0; });
}

bool has(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// @return the field's text, or null when it is none.
const std::string* text_in(const json& object, const char* field) {
    const auto found = object.find(field);
    return found == object.end() ? nullptr : found->get_ptr<const std::string*>();
}

int number_in(const json& object, const char* field, int otherwise) {
    const auto found = object.find(field);
    return found != object.end() && found->is_number_integer() ? found->get<int>() : otherwise;
}

int bars_of(const json& network) {
    constexpr int no_signal = -200;
    int percent = number_in(network, "signal_percent", -1);
    const int dbm = number_in(network, "signal_dbm", no_signal);
    if (percent < 0 && dbm > no_signal)
        percent = 2 * (std::clamp(dbm, -100, -50) + 100);
    return percent < 0 ? 0 : std::clamp(percent / 25 + 1, 1, 4);
}

std::optional<network> read_network(const json& told) {
    const std::string* name = told.is_object() ? text_in(told, "name") : nullptr;
    if (name == nullptr && told.is_object())
        name = text_in(told, "ssid");
    if (name == nullptr)
        return {};
    network read;
    const std::string* hex = text_in(told, "ssid_hex");
    read.ssid = hex != nullptr ? from_hex(*hex).value_or("") : unescape(*name);
    if (read.ssid.empty() || read.ssid.size() > longest_ssid)
        return {};
    read.name = *name;
    if (const std::string* text = text_in(told, "security"))
        read.security_text = text->substr(0, 64);
    read.bars = bars_of(told);
    read.channel = number_in(told, "channel", 0);
    return read;
}

} // namespace

void join_order::forget_key() {
    explicit_bzero(key.data(), key.size());
    key.clear();
}

bool is_own_host(std::string_view host, const std::vector<std::string>& names, int port) {
    const std::string told = lower(host);
    return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
        return told == name + ":" + std::to_string(port) || (port == http_port && told == name);
    });
}

bool is_own_origin(std::string_view origin, const std::vector<std::string>& names, int port) {
    constexpr std::string_view scheme = "http://";
    return lower(origin.substr(0, scheme.size())) == scheme &&
           is_own_host(origin.substr(scheme.size()), names, port);
}

std::string unescape(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const int byte =
            text.size() >= 4 && text[0] == '\\' && text[1] == 'x' ? byte_of(text.substr(2)) : -1;
        bytes += byte >= 0 ? static_cast<char>(byte) : text.front();
        text.remove_prefix(byte >= 0 ? 4 : 1);
    }
    return bytes;
}

std::string to_hex(std::string_view bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        hex += {digits[byte >> 4], digits[byte & 0xF]};
    }
    return hex;
}

std::optional<std::string> from_hex(std::string_view digits) {
    if (digits.size() % 2 != 0 || !is_hex(digits))
        return {};
    std::string bytes;
    for (; !digits.empty(); digits.remove_prefix(2))
        bytes += static_cast<char>(byte_of(digits));
    return bytes;
}

json read_object(std::string_view body) {
    if (body.size() > longest_body)
        return nullptr;
    json object = json::parse(body.begin(), body.end(), nullptr, false);
    return object.is_object() ? object : json(nullptr);
}

const char* key_problem(const security& how, std::string_view key) {
    const std::size_t length = key.size();
    if (!how.needs_key())
        return "";
    if (length == 0)
        return "key_missing";
    if (std::any_of(key.begin(), key.end(), [](unsigned char c) { return std::iscntrl(c) != 0; }))
        return "key_characters";
    if (how.enc == "wep") {
        const bool fits =
            length == 5 || length == 13 || ((length == 10 || length == 26) && is_hex(key));
        return fits ? "" : "key_length_wep";
    }
    return (length >= 8 && length <= 63) || (length == 64 && is_hex(key)) ? "" : "key_length";
}

security security_of(std::string_view text) {
    const bool aes = has(text, "AES") || has(text, "CCMP");
    if (has(text, "WPA2"))
        return {"wpa2psk", aes || !has(text, "TKIP") ? "aes" : "tkip"};
    if (has(text, "WPA"))
        return {"wpapsk", aes ? "aes" : "tkip"};
    if (has(text, "WEP") || has(text, "SHARED"))
        return {"wep", "wep"};
    return {"open", "none"};
}

std::optional<join_order> read_join(const json& object, const std::vector<network>& networks,
                                    std::string& problem) {
    const std::string* hex = text_in(object, "ssid_hex");
    const std::string* name = text_in(object, "name");
    const std::string* key = text_in(object, "key");
    problem = "name_missing";
    if ((hex == nullptr) == (name == nullptr))
        return {};
    join_order order;
    order.ssid = hex != nullptr ? from_hex(*hex).value_or("") : *name;
    order.key = key != nullptr ? *key : "";
    if (order.ssid.empty())
        return {};
    problem = "name_length";
    if (order.ssid.size() > longest_ssid)
        return {};
    const auto known = std::find_if(networks.begin(), networks.end(), [&](const network& listed) {
        return listed.ssid == order.ssid;
    });
    order.hidden = known == networks.end();
    order.how = !order.hidden       ? security_of(known->security_text)
                : order.key.empty() ? security{"open", "none"}
                                    : security{"wpa2psk", "aes"};
    problem = key_problem(order.how, order.key);
    if (!problem.empty())
        return {};
    if (!order.how.needs_key())
        order.key.clear();
    return order;
}

std::vector<network> read_networks(const json& outcome) {
    std::vector<network> list;
    const auto told = outcome.find("networks");
    if (told == outcome.end() || !told->is_array())
        return list;
    for (const json& entry : *told) {
        const std::optional<network> read = read_network(entry);
        if (!read)
            continue;
        const auto same = std::find_if(list.begin(), list.end(), [&](const network& listed) {
            return listed.ssid == read->ssid;
        });
        if (same == list.end()) {
            list.push_back(*read);
        } else if (same->bars < read->bars) {
            *same = *read;
        }
    }
    std::sort(list.begin(), list.end(), [](const network& a, const network& b) {
        return a.bars != b.bars ? a.bars > b.bars : a.name < b.name;
    });
    if (list.size() > most_networks)
        list.resize(most_networks);
    return list;
}

bool is_code(std::string_view told, std::string_view code) {
    unsigned int differs = told.size() != code.size() ? 1 : 0;
    for (std::size_t i = 0; i < code.size(); ++i)
        differs |= static_cast<unsigned char>(code[i] ^ (i < told.size() ? told[i] : '\0'));
    return differs == 0;
}
