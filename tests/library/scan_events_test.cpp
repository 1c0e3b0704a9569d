// SPDX-License-Identifier: MIT
// What a Realtek driver's scan events, also hostile ones, are read as.

#include "tests/support/camera_test.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <random>
#include <set>

#include "libwlan/libwlan.h"
#include "tests/support/scan_stream.h"

namespace {

using namespace scan_stream;

class scan_events : public camera_test {
protected:
    scan_events() { plug_in(scene("realtek").key("scan", {{"max_quality", 100}})); }

    /// @return what a survey lists whose scan gives these bytes.
    std::vector<sites> survey(const std::string& stream) const {
        write("/answers/scan", stream);
        std::vector<sites> list;
        EXPECT_EQ(watch([&] { return run_site_survey(list); }).result, 0);
        return list;
    }
};

const std::string begun = address(1) + mode(3);
const std::string other = point(2, "other");

TEST_F(scan_events, hostile_event_harms_only_its_entry) {
    const struct {
        const char* name;
        std::string stream;
        lines listed;
    } rows[] = {
        {"before any address", name("nobody") + mode(3) + quality(1, 1) + other, {"other"}},
        {"event of 0 bytes ends the walk", point(1, "a") + u16(0) + u16(0x8B15) + other, {"a"}},
        {"event of 3 bytes ends the walk", point(1, "a") + u16(3) + "x" + other, {"a"}},
        {"event beyond the end", point(1, "a") + u16(0xFFFF) + u16(0x8B15) + other, {"a"}},
        {"stream breaks off", point(1, "a") + other.substr(0, 5), {"a"}},
        {"short address still begins an entry", event(0x8B15, u16(1)) + mode(3) + name("b") + other, {"b", "other"}},
        {"short frequency", begun + name("a") + event(0x8B05, u16(1)) + other, {"a", "other"}},
        {"short quality", begun + name("a") + event(0x8C01, "") + other, {"a", "other"}},
        {"short mode", begun + name("a") + event(0x8B07, "x") + other, {"a", "other"}},
        {"short encryption", begun + name("a") + event(0x8B2B, "") + other, {"a", "other"}},
        {"short elements", begun + name("a") + event(0x8C05, "x") + other, {"a", "other"}},
        {"name longer than the buffer", other + begun + sized(0x8B1B, 30, 1, "abc"), {"other"}},
        {"name of 33 bytes", begun + name(std::string(33, 'n')) + other, {"other"}},
        {"name without flags", begun + sized(0x8B1B, 1, 0, "x") + other, {"other"}},
        {"name with a NUL", begun + name(std::string("ab\0cd", 5)) + other, {"ab", "other"}},
        {"elements longer than the buffer", other + begun + name("a") + sized(0x8C05, 99, 0, "x"), {"a", "other"}},
        {"huge mode is automatic, no access point", address(1) + mode(-1) + name("a") + other, {"other"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(names(survey(row.stream)), row.listed);
    }
}

TEST_F(scan_events, elements_beyond_the_buffer_are_told) {
    const std::string overflow = "IWEVGENIE overflow\n";
    const struct {
        const char* name;
        std::string elements;
        bool told;
    } rows[] = {
        {"none, at the buffer's end", elements(""), false},
        {"one byte too many", sized(0x8C05, 1, 0), true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(names(survey(begun + name("a") + row.elements)), lines{"a"});
        EXPECT_EQ(read("/dev/console").find(overflow) != std::string::npos, row.told);
    }
}

TEST_F(scan_events, channel_follows_from_the_frequency) {
    const struct {
        int mantissa, exponent, channel;
    } rows[] = {
        {2412, 6, 1},    {2437, 6, 6},        {241200000, 1, 1},          {2472, 6, 13},
        {2484, 6, 15},   {5180, 6, 554},      {2437000, -1, -481},        {2437000, -32768, -481}, // as of 0 MHz
        {2437, 7, -481}, {2437, 32767, -481}, {INT32_MIN, 6, -429497211},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(print("%d * 10^%d", row.mantissa, row.exponent));
        EXPECT_EQ(survey(begun + name("a") + frequency(row.mantissa, row.exponent)).at(0).channel, row.channel);
    }
}

TEST_F(scan_events, hostile_elements_count_as_far_as_they_go) {
    const std::string lying = bytes({48, 12, 1, 0, 0, 0x0F, 0xAC, 4, 200, 0, 0, 0x0F, 0xAC, 4});
    const std::string long_rsn = bytes({48, 39}) + rsn(4, {4}).substr(2, 14) + std::string(25, 'x');
    const std::string no_progress = bytes({0, 254});
    const struct {
        const char* name;
        std::string elements;
        const char* security;
    } rows[] = {
        {"counts more than it holds", lying, "AES|WPA2-PSK"},
        {"no suites at all", bytes({48, 0}), "TKIP|WPA2-PSK"},
        {"41 bytes are too many", long_rsn, "NONE|OPEN"},
        {"40 bytes are kept", bytes({48, 38}) + long_rsn.substr(2, 38), "AES|WPA2-PSK"},
        {"the later one counts", rsn(4, {4}) + rsn(2, {2}), "TKIP|WPA2-PSK"},
        {"254 makes no progress", rsn(4, {4}) + no_progress + rsn(2, {2}) + std::string(260, 'x'), "AES|WPA2-PSK"},
        {"255 goes on at its length byte", bytes({0, 255, 0}) + rsn(4, {4}), "AES|WPA2-PSK"},
        {"255 of RSN is one byte of it", bytes({48, 255, 0}), "TKIP|WPA2-PSK"},
        {"foreign suites", security_element(48, "", bytes({0, 0x50, 0xF2}), 4, {4}), "TKIP|WPA2-PSK"},
        {"another vendor", bytes({221, 6, 0, 0x50, 0xF2, 4, 1, 0}), "NONE|OPEN"},
        {"too short to be WPA", bytes({221, 3, 0, 0x50, 0xF2}), "NONE|OPEN"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(told(survey(point(1, "a", elements(row.elements)) + other)),
                  (lines{print("a|02:00:00:00:00:01|%s|Infra|6|200|70", row.security),
                         "other|02:00:00:00:00:02|NONE|OPEN|Infra|6|200|70"}));
    }
}

/// The same events as a 64-bit kernel lays them out for 64-bit programs: the payload begins at 8, the bytes that an
/// event counts at 16.
std::string widened(const std::string& stream) {
    std::string wide;
    for (std::size_t at = 0; at < stream.size();) {
        std::uint16_t length = 0;
        std::uint16_t command = 0;
        std::memcpy(&length, &stream[at], sizeof length);
        std::memcpy(&command, &stream[at + 2], sizeof command);
        std::string payload = stream.substr(at + 4, length - 4U);
        if (command == 0x8B1B || command == 0x8B2B || command == 0x8C05)
            payload.insert(4, 4, '\0');
        wide += u16(8 + payload.size()) + u16(command) + u32(0) + payload;
        at += length;
    }
    return wide;
}

TEST_F(scan_events, wide_events_are_no_networks) {
    const std::string air = point(1, "a", elements(rsn(4, {4}))) + other;
    EXPECT_EQ(names(survey(air)), (lines{"a", "other"}));
    EXPECT_EQ(names(survey(widened(air))), lines{});
    EXPECT_EQ(names(survey(widened(air) + air)), (lines{"a", "other"})); // and do no harm
}

// Random air
// --------------------------------------------------------------------------------------------------------------------

/// An access point as the driver hears it.
struct heard {
    std::string ssid;
    int number, mode, channel;
    bool encrypted;
    int wpa_group, rsn_group; // 0: no such element
    int pairwise, quality;

    [[nodiscard]] bool secured() const { return wpa_group != 0 || rsn_group != 0; }
};

heard random_point(std::mt19937& random, int number) {
    const auto pick = [&](int low, int high) { return std::uniform_int_distribution<>(low, high)(random); };
    const std::string ssids[] = {"Home", "home", "Süd", "", "<hidden>", std::string(32, 'n'), "a\nb", "\"x\""};
    heard point;
    point.ssid = ssids[pick(0, 7)];
    point.number = number;
    point.mode = pick(0, 4) == 0 ? pick(0, 9) : 3;
    point.channel = pick(1, 13);
    point.encrypted = pick(0, 1) == 1;
    point.wpa_group = pick(0, 2) * 2;
    point.rsn_group = pick(0, 2) * 2;
    point.pairwise = pick(1, 2) * 2;
    point.quality = pick(0, 120);
    return point;
}

std::string events_of(const heard& point) {
    const int mhz = 2407 + 5 * point.channel;
    std::string events = address(point.number) + name(point.ssid) + mode(point.mode) +
                         (point.channel % 2 == 0 ? frequency(mhz, 6) : frequency(100000 * mhz, 1)) +
                         encryption(point.encrypted) + quality(point.quality, 150) +
                         event(0x8B21, std::string(16, '\x7F')); // rates, which nobody reads
    if (point.secured()) {
        events += elements((point.wpa_group != 0 ? wpa(point.wpa_group, {point.pairwise}) : "") + bytes({0, 1, 'x'}) +
                           (point.rsn_group != 0 ? rsn(point.rsn_group, {2, point.pairwise}) : ""));
    }
    return events;
}

/// How it is listed, unless its name is listed already; nothing for one that is not to be listed.
std::optional<std::string> obvious_reading(const heard& point) {
    if (point.ssid.empty() || point.ssid == "<hidden>" || point.mode != 3 || (point.encrypted && !point.secured()))
        return std::nullopt;
    const int group = point.rsn_group != 0 ? point.rsn_group : point.wpa_group;
    const char* cipher = !point.secured() ? "NONE" : group == 4 && point.pairwise == 4 ? "AES" : "TKIP";
    const char* authentication = !point.secured() ? "OPEN" : point.rsn_group != 0 ? "WPA2-PSK" : "WPA-PSK";
    // In single precision, as the driver's own tools reckon: 59 of 100 are 58 percent.
    const auto percent = static_cast<int>(static_cast<float>(point.quality) / 100.0F * 100.0F);
    return print("%s%s|02:00:00:00:00:%02X|%s|%s|Infra|%d|150|%d", point.ssid.c_str(),
                 point.ssid.size() == 32 ? " " : "", static_cast<unsigned>(point.number), cipher, authentication,
                 point.channel, std::min(percent, 100));
}

TEST_F(scan_events, random_air_is_read_the_obvious_way) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::string stream;
        std::multiset<std::string> expected;
        std::set<std::string> listed_names;
        const int count = std::uniform_int_distribution<>(0, 30)(random);
        for (int number = 0; number < count; ++number) {
            const heard point = random_point(random, number);
            stream += events_of(point);
            const auto listed = obvious_reading(point);
            if (listed && listed_names.insert(point.ssid).second)
                expected.insert(*listed);
        }
        const std::vector<sites> list = survey(stream.empty() ? std::string(1, '\0') : stream);
        const lines found = told(list);
        EXPECT_EQ(std::multiset<std::string>(found.begin(), found.end()), expected);
        EXPECT_TRUE(std::is_sorted(list.begin(), list.end(), compare_by_ssid));
    }
}

} // namespace
