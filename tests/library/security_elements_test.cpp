// SPDX-License-Identifier: MIT
// What security elements say about ciphers, and dumps of bytes.

#include "tests/support/camera_test.h"

#include "libwlan/libwlan.h"
#include "tests/support/scan_stream.h"

namespace {

using scan_stream::rsn;
using scan_stream::wpa;

constexpr int other_bit = 1 << 30; // which no element knows

/// The element with another length byte: what follows is not its own.
std::string with_length(std::string element, int length) {
    element[1] = static_cast<char>(length);
    return element;
}

TEST(security_elements, add_the_bits_of_their_ciphers) {
    const struct {
        const char* name;
        std::string element;
        int (*parse)(unsigned char*, int*);
        int bits;
    } rows[] = {
        {"WPA: TKIP; TKIP, CCMP", wpa(2, {2, 4}), parse_wpa_ie,
         WPA_PARSED | WPA_GROUP_TKIP | WPA_PAIRWISE_TKIP | WPA_PAIRWISE_CCMP},
        {"WPA: WEP-40; WEP-104, reserved", wpa(1, {5, 6}), parse_wpa_ie,
         WPA_PARSED | WPA_GROUP_WEP40 | WPA_PAIRWISE_WEP104},
        {"RSN: CCMP; CCMP", rsn(4, {4}), parse_rsn_ie, RSN_PARSED | RSN_GROUP_CCMP | RSN_PAIRWISE_CCMP},
        {"RSN: WEP-104; WEP-40, TKIP", rsn(5, {1, 2}), parse_rsn_ie,
         RSN_PARSED | RSN_GROUP_WEP104 | RSN_PAIRWISE_WEP40 | RSN_PAIRWISE_TKIP},
        {"WPA: ends before its last suite", with_length(wpa(2, {2, 4}), 16), parse_wpa_ie,
         WPA_PARSED | WPA_GROUP_TKIP | WPA_PAIRWISE_TKIP},
        {"RSN: ends before its last suite", with_length(rsn(2, {2, 4}), 12), parse_rsn_ie,
         RSN_PARSED | RSN_GROUP_TKIP | RSN_PAIRWISE_TKIP},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::string element = row.element;
        int bits = other_bit;
        EXPECT_EQ(row.parse(reinterpret_cast<unsigned char*>(element.data()), &bits), row.bits | other_bit);
        EXPECT_EQ(bits, row.bits | other_bit);
    }
}

TEST(security_elements, suites_are_named_and_set_their_bit) {
    constexpr int group = 0;
    constexpr int pairwise = 1;
    constexpr int neither = 2;
    const struct {
        unsigned char type;
        int kind;
        const char* name;
        unsigned int wpa_bit;
        int wpa_result = 0;
    } rows[] = {
        {1, group, "WEP-40", WPA_GROUP_WEP40},
        {1, pairwise, "WEP-40", WPA_PAIRWISE_WEP40},
        {2, group, "TKIP", WPA_GROUP_TKIP},
        {2, pairwise, "TKIP", WPA_PAIRWISE_TKIP},
        {4, group, "CCMP", WPA_GROUP_CCMP},
        {4, pairwise, "CCMP", WPA_PAIRWISE_CCMP},
        {5, group, "WEP-104", WPA_GROUP_WEP104},
        {5, pairwise, "WEP-104", WPA_PAIRWISE_WEP104},
        {4, neither, "CCMP", 0},
        {3, group, "UnKnown", 0, -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(print("type %d, kind %d", row.type, row.kind));
        unsigned char wpa_suite[] = {0x00, 0x50, 0xF2, row.type};
        unsigned char rsn_suite[] = {0x00, 0x0F, 0xAC, row.type};
        unsigned int bits = 0;
        char name[8];
        EXPECT_EQ(parse_wpa_oui(wpa_suite, row.kind, &bits, name), row.wpa_result);
        EXPECT_STREQ(name, row.name);
        EXPECT_EQ(bits, row.wpa_bit);

        bits = 0;
        parse_rsn_oui(rsn_suite, row.kind, &bits, name);
        EXPECT_STREQ(name, row.name);
        EXPECT_EQ(bits, row.wpa_bit << 8U);
    }
}

TEST(security_elements, other_family_s_suite_is_unknown) {
    unsigned char rsn_suite[] = {0x00, 0x0F, 0xAC, 4};
    unsigned int bits = 0;
    char name[8];
    EXPECT_EQ(parse_wpa_oui(rsn_suite, 0, &bits, name), -1);
    EXPECT_STREQ(name, "UnKnown");
    EXPECT_EQ(bits, 0U);
}

TEST(parse_encrypt, fills_the_texts_of_what_is_to_be_listed) {
    const struct {
        const char* name;
        const char* ssid;
        WIRELESS_MODE mode;
        int bits;
        int result;
        const char* texts; // cipher, authentication
    } rows[] = {
        {"open", "Net", WIRELESS_MODE_MASTER, 0, 0, "NONE OPEN"},
        {"WEP, which no element tells", "Net", WIRELESS_MODE_MASTER, 1, 0, "WEP OPEN"},
        {"RSN counts before WPA", "Net", WIRELESS_MODE_MASTER,
         WPA_PARSED | WPA_GROUP_TKIP | RSN_PARSED | RSN_GROUP_CCMP | RSN_PAIRWISE_CCMP, 0, "AES WPA2-PSK"},
        {"no access point", "Net", WIRELESS_MODE_INFRA, 0, -1, "as it was"},
        {"its name is listed", "Listed", WIRELESS_MODE_MASTER, 0, -1, "as it was"},
    };
    std::vector<sites> list{{"Listed", "", "", "", "", 0, 0, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        sites entry{"", "", "as", "it was", "", 0, 0, 0};
        std::snprintf(entry.ssid, sizeof entry.ssid, "%s", row.ssid);
        EXPECT_EQ(parse_encrypt(nullptr, &entry, row.bits, row.mode, list), row.result);
        EXPECT_EQ(print("%s %s", entry.encryption, entry.authentication), row.texts);
        EXPECT_EQ(names(list), lines{"Listed"});
    }
}

TEST(hex_dump, shows_rows_of_sixteen) {
    const std::string data = "0123456789abcdef\x1f";
    const auto row_of = [&](std::size_t index, const char* bytes) {
        return print("0x%08X | %s\n", static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(&data[index])), bytes);
    };
    const std::string ruler = "-----------+-------------------------------------------------+-----------------\n";
    const std::string first = row_of(0, "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66 | 0123456789abcdef");
    const std::string second = row_of(16, "1f                                              |  ");
    const struct {
        int length;
        std::string shown;
    } rows[] = {{0, ""}, {16, first}, {17, first + second}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.length);
        const outcome dump = watch([&] { return dumpHexData(stdout, text("t"), text(data), row.length); });
        EXPECT_EQ(dump.result, static_cast<int>(ruler.size())); // the last write's
        EXPECT_EQ(dump.out, "--- Hex Dump (t) ---\n" + ruler + row.shown + ruler);
    }
}

} // namespace
