// SPDX-License-Identifier: MIT
// Turning the raw results of a scan into a survey list.

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "base/unique_fd.h"
#include "base/wireless_ioctl.h"
#include "libwlan/wext.h"
#include "realtek/scan.h"
#include "realtek/scan_results.h"
#include "sites.h"

using namespace libwlan;
using namespace libwlan::realtek;

namespace {

constexpr int channel_1_frequency = 2412; // MHz
constexpr int channel_spacing = 5;

/// A network's name as text. Part of the interface: a name of 32 bytes runs on into the record's
/// next byte, its length, which reads as a blank.
void read_name(char (&name)[sizeof sites::ssid], const scan_result_t& result) {
    const auto* text = reinterpret_cast<const char*>(result.ssid);
    const std::size_t length = strnlen(text, sizeof result.ssid);
    std::memcpy(name, text, length);
    if (length == sizeof result.ssid)
        name[length] = static_cast<char>(result.ssid_len);
}

bool is_hidden(const char (&name)[sizeof sites::ssid]) {
    constexpr char shown_as[] = "<hidden>";
    return name[0] == '\0' || std::memcmp(name, shown_as, sizeof shown_as) == 0;
}

/// Infrastructure and master match each other, in both directions.
bool matches(WIRELESS_MODE mode, WIRELESS_MODE filter) {
    return mode == filter || filter == WIRELESS_MODE_ANY ||
           (mode == WIRELESS_MODE_INFRA && filter == WIRELESS_MODE_MASTER) ||
           (mode == WIRELESS_MODE_MASTER && filter == WIRELESS_MODE_INFRA);
}

/// Encrypted, but neither WPA nor RSN: WEP or something unknown, which cameras do not join.
bool is_wep_only(const scan_result_t& result) {
    return result.wpa_ie_len == 0 && result.rsn_ie_len == 0 && result.encrypted == 1;
}

template <std::size_t size>
byte_reader element(const unsigned char (&bytes)[size], std::int32_t length) {
    return {bytes, std::min(static_cast<std::size_t>(length), size)};
}

int read_security(const scan_result_t& result) {
    unsigned int bits = 0;
    if (result.wpa_ie_len > 0)
        bits |= read_wpa_element(element(result.wpa_ie, result.wpa_ie_len));
    if (result.rsn_ie_len > 0)
        bits |= read_rsn_element(element(result.rsn_ie, result.rsn_ie_len));
    return static_cast<int>(bits);
}

int channel_of(std::int32_t frequency) {
    return static_cast<int>((static_cast<std::int64_t>(frequency) - channel_1_frequency) /
                            channel_spacing) +
           1;
}

int percent(std::int32_t quality, int maximum) {
    if (maximum == 0)
        return quality > 0 ? 100 : 0;
    const float part = static_cast<float>(quality) / static_cast<float>(maximum) * 100.0F;
    return static_cast<int>(std::clamp(part, 0.0F, 100.0F));
}

bool has(int bits, unsigned int wanted) {
    return (static_cast<unsigned int>(bits) & wanted) == wanted;
}

struct security_texts {
    char authentication[sizeof sites::authentication];
    char encryption[sizeof sites::encryption];
};

constexpr security_texts no_security{"OPEN", "NONE"};
constexpr security_texts wep_only{"OPEN", "WEP"};
constexpr security_texts wpa_tkip{"WPA-PSK", "TKIP"};
constexpr security_texts wpa_aes{"WPA-PSK", "AES"};
constexpr security_texts rsn_tkip{"WPA2-PSK", "TKIP"};
constexpr security_texts rsn_aes{"WPA2-PSK", "AES"};

const security_texts& texts_of(int bits) {
    if (bits == 0)
        return no_security;
    if (bits == 1) // no element gives this; drivers without elements might
        return wep_only;
    if (has(bits, RSN_PARSED))
        return has(bits, RSN_GROUP_CCMP | RSN_PAIRWISE_CCMP) ? rsn_aes : rsn_tkip;
    return has(bits, WPA_GROUP_CCMP | WPA_PAIRWISE_CCMP) ? wpa_aes : wpa_tkip;
}

void fill_security(sites& entry, int bits) {
    const security_texts& texts = texts_of(bits);
    std::memcpy(entry.authentication, texts.authentication, sizeof entry.authentication);
    std::memcpy(entry.encryption, texts.encryption, sizeof entry.encryption);
}

/// A Bloom filter of the listed names: a name that it does not hold is new, and only for one that
/// it may hold the list is searched.
using name_filter = std::bitset<4096>;

std::size_t hash_of(const char (&name)[sizeof sites::ssid]) {
    std::size_t hash = 0;
    for (std::size_t i = 0; i < sizeof name && name[i] != '\0'; ++i)
        hash = hash * 31 + static_cast<unsigned char>(name[i]);
    return hash % name_filter().size();
}

bool is_listed(std::vector<sites>& list, const char (&name)[sizeof sites::ssid]) {
    return find_name(list, name) != list.end();
}

// Nothing but infrastructure is listed.
constexpr sites new_entry{"", "", "", "", "Infra", 0, 0, 0};

constexpr std::size_t range_size = 1136; // more than any driver's range record
constexpr std::size_t maximum_quality_offset = 44;
static_assert(offsetof(iw_range, max_qual) == maximum_quality_offset);

} // namespace

int parse_encrypt(FILE* /*log*/, sites* entry, int bits, WIRELESS_MODE mode,
                  std::vector<sites>& list) {
    if (mode != WIRELESS_MODE_MASTER || is_listed(list, entry->ssid))
        return -1;
    fill_security(*entry, bits);
    return 0;
}

namespace libwlan::realtek {

int convert_scan_results(const scan_result_t* results, int count, int maximum_quality,
                         WIRELESS_MODE filter, std::vector<sites>& list) {
    name_filter filled;
    for (const sites& listed : list)
        filled.set(hash_of(listed.ssid));
    int accepted = 0;
    for (int i = 0; i < count; ++i) {
        const scan_result_t& result = results[i];
        char name[sizeof sites::ssid]{};
        read_name(name, result);
        if (is_hidden(name) || !matches(result.mode, filter) || is_wep_only(result))
            continue;
        ++accepted;
        const std::size_t hash = hash_of(name);
        if (result.mode != WIRELESS_MODE_MASTER || (filled[hash] && is_listed(list, name)))
            continue;
        filled.set(hash);
        list.push_back(new_entry);
        sites& entry = list.back();
        std::memcpy(entry.ssid, name, sizeof name);
        std::memcpy(entry.bssid, result.bssid, sizeof result.bssid);
        entry.channel = channel_of(result.freq);
        entry.rssi = result.level;
        entry.signal = percent(result.qual, maximum_quality);
        fill_security(entry, read_security(result));
    }
    return accepted;
}

} // namespace libwlan::realtek

int wext::get_scan_results(FILE* /*log*/, const char* ifname, int count, int* accepted,
                           scan_result_t* results, WIRELESS_MODE filter, std::vector<sites>& list) {
    *accepted = 0;
    const unique_fd control(open_request_socket());
    if (!control) {
        std::perror("wext::get_scan_results() socket:");
        return -1;
    }
    unsigned char range[range_size]{};
    iwreq request = data_request(ifname, range, sizeof range);
    request.ifr_name[sizeof request.ifr_name - 1] = '\0';
    if (wireless_ioctl(control.get(), SIOCGIWRANGE, request) < 0) {
        std::perror("wext::get_scan_results() ioctl:");
        return -1;
    }
    *accepted = convert_scan_results(results, count, range[maximum_quality_offset], filter, list);
    return 0;
}
