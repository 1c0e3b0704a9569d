// SPDX-License-Identifier: MIT
// The results of a scan as the events of Wireless Extensions.

#include "vcamera/model/scan_events.h"

#include <cstdint>

#include <sys/socket.h>

#include <linux/if_arp.h>
#include <linux/wireless.h>

namespace {

const std::string wpa_oui("\x00\x50\xF2", 3);
const std::string rsn_oui("\x00\x0F\xAC", 3);

// Types of key management suites.
constexpr char by_server = 1;
constexpr char by_passphrase = 2;

constexpr struct {
    int cipher;
    char type; // of its suite
} suites[] = {{AIR_RC4, 1}, {AIR_TKIP, 2}, {AIR_AES, 4}};

template <typename Number>
std::string bytes_of(Number value) {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

/// A 16-bit number, as most of them are: events have the kernel's byte order.
std::string short_of(std::size_t value) {
    return bytes_of(static_cast<std::uint16_t>(value));
}

/// Beacons have numbers of their own byte order, whatever the kernel's is.
std::string on_air(std::size_t value) {
    return {static_cast<char>(value & 0xFFU), static_cast<char>(value >> 8U)};
}

std::string element(int id, const std::string& body) {
    return std::string{static_cast<char>(id), static_cast<char>(body.size())} + body;
}

std::string suites_of(int ciphers, const std::string& oui) {
    std::string list;
    for (const auto& suite : suites) {
        if ((ciphers & suite.cipher) != 0)
            list += oui + suite.type;
    }
    return list;
}

/// Version, group suite, pairwise suites and key management.
std::string security(const access_point& point, const std::string& oui) {
    const std::string pairwise = suites_of(point.cipher, oui);
    const char manager = (point.security & AIR_SERVER) != 0 ? by_server : by_passphrase;
    return on_air(1) + suites_of(point.group, oui) + on_air(pairwise.size() / 4) + pairwise +
           on_air(1) + oui + manager;
}

std::string elements(const access_point& point, const std::string& name, int vendor_bytes) {
    std::string all = element(0, name) + element(1, "\x82\x84\x8B\x96\x0C\x12\x18\x24");
    if ((point.security & AIR_WPA) != 0)
        all += element(221, wpa_oui + '\x01' + security(point, wpa_oui));
    if ((point.security & AIR_WPA2) != 0)
        all += element(48, security(point, rsn_oui) + on_air(0));
    if (vendor_bytes > 0)
        all += element(221, std::string(static_cast<std::size_t>(vendor_bytes), 'v'));
    return all;
}

std::string event(unsigned int command, const std::string& payload) {
    return short_of(4 + payload.size()) + short_of(command) + payload;
}

/// The payload of an event with length and flags.
std::string counted(const std::string& bytes, unsigned int flags) {
    return short_of(bytes.size()) + short_of(flags) + bytes;
}

std::string padded(std::string bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

/// The kernel tells the channel's number first, and then the frequency.
std::string frequency(const access_point& point, frequency_form form) {
    std::string channel =
        event(SIOCGIWFREQ, padded(bytes_of<std::int32_t>(air_channel(point.mhz)), 8));
    if (form == frequency_form::channel)
        return channel;
    return channel + event(SIOCGIWFREQ, padded(bytes_of<std::int32_t>(point.mhz) + short_of(6), 8));
}

/// The beacon of a network that hides has NULs for its name.
std::string told_name(const access_point& point) {
    const std::string name(reinterpret_cast<const char*>(point.ssid), point.ssid_length);
    return point.hidden != 0 ? std::string(name.size(), '\0') : name;
}

std::string events_of(const access_point& point, frequency_form frequencies, int vendor_bytes) {
    const bool hidden = point.hidden != 0;
    const std::string name = told_name(point);
    const std::string address(reinterpret_cast<const char*>(point.bssid), sizeof point.bssid);
    const unsigned int encoding = point.security == AIR_OPEN ? IW_ENCODE_DISABLED : 0;
    const std::string quality = bytes_of(point.quality) + bytes_of(point.level);
    return event(SIOCGIWAP, padded(short_of(ARPHRD_ETHER) + address, 16)) +
           event(SIOCGIWNAME, padded("IEEE 802.11bgn", 16)) +
           event(SIOCGIWESSID, counted(name, hidden ? 0 : 1)) +
           event(SIOCGIWMODE, bytes_of<std::uint32_t>(point.mode)) + frequency(point, frequencies) +
           event(SIOCGIWENCODE, counted("", encoding)) +
           event(SIOCGIWRATE, padded(bytes_of(54000000), 8)) + event(IWEVQUAL, padded(quality, 4)) +
           event(IWEVGENIE, counted(elements(point, name, vendor_bytes), 1)) +
           event(IWEVCUSTOM, counted("bcn_int=100", 1));
}

} // namespace

std::string scan_events(const air& air, frequency_form frequencies, int vendor_bytes) {
    std::string stream;
    for (int i = 0; i < air.count; ++i) {
        if (air.points[i].gone == 0)
            stream += events_of(air.points[i], frequencies, vendor_bytes);
    }
    return stream;
}

std::string beacon_elements(const access_point& point, int vendor_bytes) {
    return elements(point, told_name(point), vendor_bytes);
}
