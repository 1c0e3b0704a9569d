// SPDX-License-Identifier: MIT
// Hostile input: what comes to wlansetup through HTTP, and the names of a survey.

#include <algorithm>
#include <string>
#include <string_view>

#include "fuzz/fuzz_check.h"
#include "tools/wlansetup/input.h"

namespace {

const std::vector<std::string> own_names = {"camera.lan", "192.168.8.1"};

void judge_headers(std::string_view text) {
    const bool own = is_own_host(text, own_names, 80);
    const auto digits_or_dots = [](unsigned char c) { return c >= '-' && c < 0x7F; };
    fuzz_check(!own || std::all_of(text.begin(), text.end(), digits_or_dots));
    fuzz_check(is_own_origin("http://" + std::string(text), own_names, 80) == own);
    fuzz_check(!is_own_origin(text, own_names, 80) || text.substr(0, 4) != "null");
}

void read_names(std::string_view text) {
    const std::string bytes = unescape(text);
    fuzz_check(bytes.size() <= text.size());
    fuzz_check(from_hex(to_hex(text)) == std::string(text));
}

void read_body(std::string_view text) {
    const nlohmann::json object = read_object(text);
    if (object.is_null())
        return;
    const std::vector<network> listed = read_networks(object);
    for (const network& one : listed) {
        fuzz_check(!one.ssid.empty() && one.ssid.size() <= longest_ssid && one.bars >= 0 &&
                   one.bars <= 4);
    }
    std::string problem;
    const auto order = read_join(object, listed, problem);
    fuzz_check(order.has_value() == problem.empty());
    if (!order)
        return;
    fuzz_check(!order->ssid.empty() && order->ssid.size() <= longest_ssid &&
               order->key.size() <= 64);
    fuzz_check(order->how.needs_key() == !order->key.empty());
    fuzz_check(order->key.find('\n') == std::string::npos &&
               order->key.find('\0') == std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    judge_headers(text);
    read_names(text);
    read_body(text);
    return 0;
}
