// SPDX-License-Identifier: MIT
// Access points as a Realtek driver's scan tells them.

#include "realtek_beacons.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/byte_reader.h"
#include "libwlan/wext.h"
#include "link.h"

using libwlan::byte_reader;

namespace {

constexpr char station[] = "wlan0";

/// What an element of WPA or of WPA2 offers: lists of suites, each with its count in front.
struct offer {
    bool is_there = false;
    bool aes = false;
    bool tkip = false;
    bool by_server = false;
};

template <typename Visitor>
std::size_t visit_suites(byte_reader element, std::size_t at, const Visitor& visit) {
    const auto count = element.part(at, 2);
    const std::size_t suites = count ? count->data()[0] : 0U;
    at += 2;
    for (std::size_t i = 0; i < suites; ++i, at += 4) {
        const auto suite = element.part(at, 4);
        if (!suite)
            break;
        visit(suite->data()[3]);
    }
    return at;
}

/// @param group where the suite of the group stands; the lists follow it.
offer read_offer(const unsigned char* bytes, std::int32_t length, std::size_t group) {
    offer found;
    if (length <= 0)
        return found;
    found.is_there = true;
    const byte_reader element(bytes, static_cast<std::size_t>(length));
    const std::size_t management = visit_suites(element, group + 4, [&](unsigned char type) {
        constexpr unsigned char tkip = 2;
        constexpr unsigned char ccmp = 4;
        found.tkip |= type == tkip;
        found.aes |= type == ccmp;
    });
    visit_suites(element, management, [&](unsigned char type) {
        constexpr unsigned char server = 1;
        found.by_server |= type == server;
    });
    return found;
}

std::string security_of(const scan_result_t& result) {
    const offer wpa = read_offer(
        result.wpa_ie, std::min<std::int32_t>(result.wpa_ie_len, sizeof result.wpa_ie), 8);
    const offer wpa2 = read_offer(
        result.rsn_ie, std::min<std::int32_t>(result.rsn_ie_len, sizeof result.rsn_ie), 4);
    if (!wpa.is_there && !wpa2.is_there)
        return result.encrypted != 0 ? "WEP" : "OPEN";
    const std::string login = wpa.by_server || wpa2.by_server ? "-EAP" : "-PSK";
    std::string text = wpa.is_there ? "WPA" + login : "";
    if (wpa2.is_there)
        text += (text.empty() ? "WPA2" : "/WPA2") + login;
    const bool tkip = wpa.tkip || wpa2.tkip;
    const bool aes = wpa.aes || wpa2.aes;
    return text + (tkip && aes ? " TKIP/AES" : tkip ? " TKIP" : aes ? " AES" : "");
}

beacon read(const scan_result_t& result) {
    constexpr int least_mhz = 1000;
    constexpr int most_percent = 128; // a level above is dBm in eight bits
    beacon heard;
    const auto length =
        std::clamp<std::size_t>(static_cast<std::size_t>(result.ssid_len), 0, sizeof result.ssid);
    std::memcpy(heard.name, result.ssid, length);
    std::snprintf(heard.bssid, sizeof heard.bssid, "%s", result.bssid);
    std::snprintf(heard.security, sizeof heard.security, "%s", security_of(result).c_str());
    heard.mhz = result.freq >= least_mhz ? result.freq : 0;
    heard.channel = result.freq > 0 ? channel_number(result.freq) : 0;
    if (result.level >= most_percent) {
        heard.dbm = result.level - 256;
    } else {
        heard.percent = std::min<std::int32_t>(result.level, 100);
    }
    return heard;
}

} // namespace

int hear_realtek(std::vector<beacon>& list) {
    wext radio;
    if (radio.init(false) != 0 || radio.driver_scan(nullptr, station) != 0)
        return -1;
    std::vector<scan_result_t> results(max_scan_results);
    constexpr int tries = 5; // as the library's own survey does
    int count = -1;
    for (int i = 0; i < tries && count < 0; ++i)
        count = radio.driver_get_scan_results(nullptr, station, results.data());
    radio.release();
    if (count < 0)
        return -1;
    results.resize(static_cast<std::size_t>(count));
    for (const scan_result_t& result : results) {
        if (result.mode == WIRELESS_MODE_MASTER)
            list.push_back(read(result));
    }
    return 0;
}
