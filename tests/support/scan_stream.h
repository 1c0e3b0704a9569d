// SPDX-License-Identifier: MIT
// Scan results of a Realtek driver, put together byte by byte: events as the 32-bit camera lays them out, and the
// security elements in them.

#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace scan_stream {

inline std::string bytes(std::initializer_list<int> values) {
    return {values.begin(), values.end()};
}
/// Numbers of events, which have this processor's byte order.
inline std::string u16(std::size_t value) {
    const auto number = static_cast<std::uint16_t>(value);
    return {reinterpret_cast<const char*>(&number), sizeof number};
}
inline std::string u32(int value) {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}
/// Numbers of elements, which have that of the air.
inline std::string le16(std::size_t value) {
    return bytes({static_cast<int>(value), static_cast<int>(value >> 8U)});
}

inline std::string event(unsigned command, const std::string& payload) {
    return u16(4 + payload.size()) + u16(command) + payload;
}
/// An event whose content tells its own length, truthfully or not.
inline std::string sized(unsigned command, std::size_t length, unsigned flags, const std::string& content = "") {
    return event(command, u16(length) + u16(flags) + content);
}

/// 02:00:00:00:00:01 and so on; begins an access point.
inline std::string address(int number) {
    return event(0x8B15, u16(1) + bytes({2, 0, 0, 0, number / 256, number % 256}));
}
inline std::string name(const std::string& ssid) {
    return sized(0x8B1B, ssid.size(), 1, ssid);
}
/// @param value 3 is an access point.
inline std::string mode(int value) {
    return event(0x8B07, u32(value));
}
inline std::string frequency(int mantissa, int exponent) {
    return event(0x8B05, u32(mantissa) + u16(static_cast<std::size_t>(exponent)) + u16(0));
}
inline std::string encryption(bool on) {
    return sized(0x8B2B, 0, on ? 0x0800 : 0x8000);
}
inline std::string quality(int quality, int level) {
    return event(0x8C01, bytes({quality, level, 0, 7}));
}
inline std::string elements(const std::string& content) {
    return sized(0x8C05, content.size(), 0, content);
}

/// An open access point on channel 6.
inline std::string point(int number, const std::string& ssid, const std::string& more = "") {
    return address(number) + mode(3) + name(ssid) + frequency(2437, 6) + encryption(false) + quality(70, 200) + more;
}

/// A security element with one group cipher and some pairwise ciphers: 1 is WEP-40, 2 TKIP, 4 CCMP, 5 WEP-104.
inline std::string security_element(int id, std::string head, const std::string& oui, int group,
                                    const std::vector<int>& pairwise) {
    std::string body = std::move(head) + le16(1) + oui + bytes({group}) + le16(pairwise.size());
    for (const int cipher : pairwise)
        body += oui + bytes({cipher});
    body += le16(1) + oui + bytes({2});
    return bytes({id, static_cast<int>(body.size())}) + body;
}
inline std::string wpa(int group, const std::vector<int>& pairwise) {
    return security_element(221, bytes({0, 0x50, 0xF2, 1}), bytes({0, 0x50, 0xF2}), group, pairwise);
}
inline std::string rsn(int group, const std::vector<int>& pairwise) {
    return security_element(48, "", bytes({0, 0x0F, 0xAC}), group, pairwise);
}

} // namespace scan_stream
