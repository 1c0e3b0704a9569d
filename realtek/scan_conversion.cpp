#include "realtek/scan_conversion.h"

#include <algorithm>
#include <bitset>
#include <cstring>

#include "realtek/security_elements.h"
#include "util/text_field.h"

namespace {

constexpr int channel_1_frequency = 2412; // MHz
constexpr int channel_spacing = 5;

/// A network's name as text. A name of 32 bytes runs on into the record's next byte, its length,
/// which reads as a blank: lists show such names with one, and callers join by the name that they
/// were shown.
void fill_name(sites& site, const scan_result_t& result) {
    const auto* name = reinterpret_cast<const char*>(result.ssid);
    const std::size_t length = strnlen(name, sizeof result.ssid);
    std::memcpy(site.ssid, name, length);
    if (length == sizeof result.ssid)
        site.ssid[length] = static_cast<char>(result.ssid_len);
}

bool is_hidden(const sites& site) {
    return site.ssid[0] == '\0' || std::strcmp(site.ssid, "<hidden>") == 0;
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
byte_view element(const unsigned char (&bytes)[size], std::int32_t length) {
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

const char* authentication_of(int bits) {
    if (bits == 0 || bits == 1)
        return "OPEN";
    return has(bits, RSN_PARSED) ? "WPA2-PSK" : "WPA-PSK";
}

const char* encryption_of(int bits) {
    if (bits == 0)
        return "NONE";
    if (bits == 1) // no element gives this; drivers without elements might
        return "WEP";
    const unsigned int ccmp = has(bits, RSN_PARSED) ? RSN_GROUP_CCMP | RSN_PAIRWISE_CCMP
                                                    : WPA_GROUP_CCMP | WPA_PAIRWISE_CCMP;
    return has(bits, ccmp) ? "AES" : "TKIP";
}

void fill_security(sites& entry, int bits) {
    fill_field(entry.authentication, authentication_of(bits));
    fill_field(entry.encryption, encryption_of(bits));
}

bool is_listed(const sites& entry, const std::vector<sites>& list) {
    return std::any_of(list.begin(), list.end(), [&](const sites& listed) {
        return std::strncmp(listed.ssid, entry.ssid, sizeof entry.ssid) == 0;
    });
}

/// Marks of the listed names. A name without its mark is new; only with it the list is searched.
using name_marks = std::bitset<4096>;

std::size_t mark_of(const sites& site) {
    std::size_t mark = 0;
    for (std::size_t i = 0; i < sizeof site.ssid && site.ssid[i] != '\0'; ++i)
        mark = mark * 31 + static_cast<unsigned char>(site.ssid[i]);
    return mark % name_marks().size();
}

} // namespace

int parse_encrypt(FILE* /*log*/, sites* entry, int bits, WIRELESS_MODE mode,
                  std::vector<sites>& list) {
    if (mode != WIRELESS_MODE_MASTER || is_listed(*entry, list))
        return -1;
    fill_security(*entry, bits);
    return 0;
}

int convert_scan_results(const scan_result_t* results, int count, int maximum_quality,
                         WIRELESS_MODE filter, std::vector<sites>& list) {
    name_marks marks;
    for (const sites& listed : list)
        marks.set(mark_of(listed));
    int accepted = 0;
    for (int i = 0; i < count; ++i) {
        const scan_result_t* result = &results[i];
        sites site{};
        fill_name(site, *result);
        if (is_hidden(site) || !matches(result->mode, filter) || is_wep_only(*result))
            continue;
        ++accepted;
        const std::size_t mark = mark_of(site);
        if (result->mode != WIRELESS_MODE_MASTER || (marks[mark] && is_listed(site, list)))
            continue;
        marks.set(mark);
        fill_field(site.network_type, "Infra");
        std::memcpy(site.bssid, result->bssid, sizeof result->bssid);
        site.channel = channel_of(result->freq);
        site.rssi = result->level;
        site.signal = percent(result->qual, maximum_quality);
        fill_security(site, read_security(*result));
        list.push_back(site);
    }
    return accepted;
}
