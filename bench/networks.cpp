// SPDX-License-Identifier: MIT
// Networks to measure with.

#include "bench/networks.h"

#include <iterator>
#include <string>

air networks(int64_t count) {
    constexpr struct {
        const char* name;
        uint8_t security, cipher, group;
    } makes[] = {
        {"Home-", AIR_WPA2, AIR_AES, AIR_AES},
        {"WLAN ", AIR_WPA | AIR_WPA2, AIR_TKIP | AIR_AES, AIR_TKIP},
        {"Printer ", AIR_WPA, AIR_TKIP, AIR_TKIP},
        {"Guests of room ", AIR_OPEN, AIR_PLAIN, AIR_PLAIN},
        {"Second floor, ", AIR_WPA2, AIR_AES, AIR_AES},
    };
    air air{};
    for (; air.count < count; ++air.count) {
        const auto& make = makes[static_cast<std::size_t>(air.count) % std::size(makes)];
        const std::string name = make.name + std::to_string(1000 + air.count * 4051 % 9000);
        access_point& point = air.points[air.count];
        point.ssid_length = static_cast<uint8_t>(name.size());
        name.copy(reinterpret_cast<char*>(point.ssid), sizeof point.ssid);
        point.security = make.security;
        point.cipher = make.cipher;
        point.group = make.group;
        point.mode = AIR_MASTER;
        point.level = -60;
        point.mhz = static_cast<uint16_t>(2412 + air.count % 3 * 25);
    }
    return air;
}
