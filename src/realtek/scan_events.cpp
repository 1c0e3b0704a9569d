// SPDX-License-Identifier: MIT
// The events of a scan, as Wireless Extensions lay them out for a 32-bit kernel.

#include "realtek/scan_events.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "base/message.h"
#include "base/text.h"
#include "base/wireless_ioctl.h"

namespace libwlan::realtek {

namespace {

// Events as the 32-bit target lays them out: header, then the payload without padding.
constexpr std::size_t header_size = 4;
constexpr std::size_t command_offset = 2;
constexpr std::size_t payload_offset = 4;
constexpr std::size_t bssid_offset = 6;    // after the address family
constexpr std::size_t exponent_offset = 8; // after the mantissa
constexpr std::size_t flags_offset = 6;    // of events with length and flags
constexpr std::size_t bytes_offset = 8;    // of events with length and flags

constexpr std::size_t bssid_size = 6;
constexpr char hex_digits[] = "0123456789ABCDEF";

// Information elements: an ID, a length and a body.
constexpr std::size_t element_header_size = 2;
constexpr std::size_t element_size_limit = 41;
constexpr unsigned char rsn_element = 48;
constexpr unsigned char vendor_element = 221;
constexpr unsigned char wpa_vendor[] = {0x00, 0x50, 0xF2, 0x01};

constexpr int largest_exponent = 6; // of a frequency: its mantissa counts MHz then

struct mode_value {
    std::uint32_t extensions; // of Wireless Extensions
    WIRELESS_MODE mode;
};

constexpr mode_value modes[] = {
    {IW_MODE_AUTO, WIRELESS_MODE_AUTO},       {IW_MODE_ADHOC, WIRELESS_MODE_ADHOC},
    {IW_MODE_INFRA, WIRELESS_MODE_INFRA},     {IW_MODE_MASTER, WIRELESS_MODE_MASTER},
    {IW_MODE_REPEAT, WIRELESS_MODE_REPEATER}, {IW_MODE_SECOND, WIRELESS_MODE_SECONDARY},
    {IW_MODE_MONITOR, WIRELESS_MODE_MONITOR},
};

void read_bssid(byte_reader event, scan_result_t& result) {
    const auto bytes = event.part(bssid_offset, bssid_size);
    if (!bytes)
        return;
    // snprintf() would take longer than all else that is read about a network.
    for (std::size_t i = 0; i < bssid_size; ++i) {
        result.bssid[3 * i] = hex_digits[bytes->data()[i] >> 4U];
        result.bssid[3 * i + 1] = hex_digits[bytes->data()[i] & 0xFU];
        result.bssid[3 * i + 2] = ':';
    }
    result.bssid[3 * bssid_size - 1] = '\0';
}

/// `rest` reaches from the event to the end of the stream.
void read_ssid(byte_reader event, byte_reader rest, scan_result_t& result) {
    const auto length = event.number<std::uint16_t>(payload_offset);
    const auto flags = event.number<std::uint16_t>(flags_offset);
    if (!length || !flags || *flags == 0 || *length == 0 || *length > sizeof result.ssid)
        return; // no flags: the network hides its name
    const auto name = rest.part(bytes_offset, *length);
    if (!name)
        return;
    std::memset(result.ssid, 0, sizeof result.ssid);
    std::memcpy(result.ssid, name->data(), name->size());
    const unsigned char* end = std::find(name->data(), name->data() + name->size(), '\0');
    result.ssid_len = static_cast<std::int32_t>(end - name->data());
}

void read_frequency(byte_reader event, scan_result_t& result) {
    const auto mantissa = event.number<std::int32_t>(payload_offset);
    const auto exponent = event.number<std::int16_t>(exponent_offset);
    if (!mantissa || !exponent || *exponent > largest_exponent)
        return;
    int divisor = 1000000;
    for (int i = 0; i < *exponent; ++i)
        divisor /= 10;
    result.freq = *mantissa / divisor;
}

void read_mode(byte_reader event, scan_result_t& result) {
    const auto value = event.number<std::uint32_t>(payload_offset);
    if (!value)
        return;
    result.mode = WIRELESS_MODE_AUTO;
    for (const mode_value& known : modes) {
        if (known.extensions == *value)
            result.mode = known.mode;
    }
}

void read_encryption(byte_reader event, scan_result_t& result) {
    const auto flags = event.number<std::uint16_t>(flags_offset);
    if (flags)
        result.encrypted = (*flags & IW_ENCODE_DISABLED) == 0 ? 1 : 0;
}

void read_quality(byte_reader event, scan_result_t& result) {
    const auto bytes = event.part(payload_offset, 2);
    if (!bytes)
        return;
    result.qual = bytes->data()[0];
    result.level = bytes->data()[1];
}

bool is_wpa_element(byte_reader element) {
    const auto vendor = element.part(element_header_size, sizeof wpa_vendor);
    return element.data()[0] == vendor_element && vendor &&
           std::memcmp(vendor->data(), wpa_vendor, sizeof wpa_vendor) == 0;
}

template <std::size_t size>
void keep_element(byte_reader element, unsigned char (&kept)[size], std::int32_t& kept_length) {
    static_assert(size >= element_size_limit);
    std::copy_n(element.data(), element.size(), kept);
    kept_length = static_cast<std::int32_t>(element.size());
}

void read_elements(byte_reader elements, scan_result_t& result) {
    std::size_t at = 0;
    while (const auto header = elements.part(at, element_header_size)) {
        // Part of the interface: a size has 8 bits. A body of 254 bytes makes it 0, which ends the
        // walk; one of 255 bytes makes it 1, and the walk goes on at the length byte.
        const auto size = static_cast<std::uint8_t>(header->data()[1] + element_header_size);
        const auto element = elements.part(at, size);
        if (size == 0 || !element)
            return;
        at += size;
        if (size >= element_size_limit)
            continue;
        if (element->data()[0] == rsn_element) {
            keep_element(*element, result.rsn_ie, result.rsn_ie_len);
        } else if (is_wpa_element(*element)) {
            keep_element(*element, result.wpa_ie, result.wpa_ie_len);
        }
    }
}

void read_generic_elements(byte_reader event, byte_reader rest, scan_result_t& result, FILE* log) {
    const auto length = event.number<std::uint16_t>(payload_offset);
    if (!length)
        return;
    const auto elements = rest.part(bytes_offset, *length);
    if (!elements) {
        print_message(log, "IWEVGENIE overflow\n");
        return;
    }
    read_elements(*elements, result);
}

void read_event(std::uint16_t command, byte_reader event, byte_reader rest, scan_result_t& result,
                FILE* log) {
    switch (command) {
    case SIOCGIWAP:
        return read_bssid(event, result);
    case SIOCGIWESSID:
        return read_ssid(event, rest, result);
    case SIOCGIWFREQ:
        return read_frequency(event, result);
    case SIOCGIWMODE:
        return read_mode(event, result);
    case SIOCGIWENCODE:
        return read_encryption(event, result);
    case IWEVQUAL:
        return read_quality(event, result);
    case IWEVGENIE:
        return read_generic_elements(event, rest, result, log);
    default:
        return;
    }
}

} // namespace

int walk_scan_events(byte_reader stream, scan_result_t* results, FILE* log) {
    int count = 0;
    std::size_t at = 0;
    while (const auto length = stream.number<std::uint16_t>(at)) {
        const auto event = stream.part(at, *length);
        if (*length < header_size || !event)
            break;
        const std::uint16_t command = *event->number<std::uint16_t>(command_offset);
        // The address opens an access point, and what follows is told about it.
        if (command == SIOCGIWAP && ++count <= max_scan_results)
            clear_bytes(&results[count - 1], sizeof *results);
        const byte_reader rest = *stream.part(at, stream.size() - at);
        if (count >= 1 && count <= max_scan_results)
            read_event(command, *event, rest, results[count - 1], log);
        at += *length;
    }
    return std::min(count, max_scan_results);
}

} // namespace libwlan::realtek
