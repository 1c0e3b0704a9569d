// SPDX-License-Identifier: MIT
// The dumps of security elements, which the shipped debug mask leaves out: this program is built of the library's
// sources with a mask that asks for them.

#include <gtest/gtest.h>

#include "libwlan/scan.h"

namespace {

std::string printed_by(int (*parse)(unsigned char*, int*), std::vector<unsigned char> element, int& bits) {
    testing::internal::CaptureStdout();
    parse(element.data(), &bits);
    return testing::internal::GetCapturedStdout();
}

TEST(element_dump, prints_every_part_of_a_wpa_element) {
    int bits = 0;
    EXPECT_EQ(printed_by(parse_wpa_ie, {221, 26,   0,    0x50, 0xF2, 1,    2,    0, 0, 0x50, 0xF2, 2,    2,    0,
                                        0,   0x50, 0xF2, 4,    0,    0x50, 0xF2, 9, 1, 0,    0,    0x50, 0xF2, 2},
                         bits),
              "WPA Information\n"
              "\tElement ID:\t\t\t221\n"
              "\tLength:\t\t\t\t26\n"
              "\tWPA tag:\t\t\t0x00-0x50-0xF2-0x01\n"
              "\tVersion:\t\t\t2\n"
              "\tGroup Cipher:\t\t\t0x00-0x50-0xF2-02 TKIP\n"
              "\tPairwise count:\t\t\t2\n"
              "\tPairwise Cipher List\n"
              "\tPairwise cipher OUI:\t\t0x00-0x50-0xF2-04 CCMP\n"
              "\tPairwise cipher OUI:\t\t0x00-0x50-0xF2-09 UnKnown\n"
              "\tNumber of Auths:\t\t1\n"
              "\tAuthKey Mngmnt Suite List\n"
              "\tAuth OUI:\t\t\t0x00-0x50-0xF2-02\n"
              "\n");
    EXPECT_EQ(bits, WPA_PARSED | WPA_GROUP_TKIP | WPA_PAIRWISE_CCMP);
}

TEST(element_dump, prints_every_part_of_an_rsn_element) {
    int bits = 0;
    EXPECT_EQ(printed_by(parse_rsn_ie,
                         {48, 20, 1, 0, 0, 0x0F, 0xAC, 5, 1, 0, 0, 0x0F, 0xAC, 1, 1, 0, 0, 0x0F, 0xAC, 2, 0x3C, 0xA0},
                         bits),
              "RSN Information\n"
              "\tElement ID:\t\t\t48\n"
              "\tLength:\t\t\t\t20\n"
              "\tVersion:\t\t\t1\n"
              "\tGroup Cipher:\t\t\t0x00-0x0F-0xAC-05 WEP-104\n"
              "\tPairewise count:\t\t1\n"
              "\tPariewise Cipher List\n"
              "\tParewise Key cipher:\t\t0x00-0x0F-0xAC-01 WEP-40\n"
              "\tAuthentication Suite Count:\t1\n"
              "\tAuthentication Suite List\n"
              "\tAuthentication Suite:\t\t0x00-0x0F-0xAC-02\n"
              "\tRSN Capabilities:\t\t0x3CA0\n\n");
    EXPECT_EQ(bits, RSN_PARSED | RSN_GROUP_WEP104 | RSN_PAIRWISE_WEP40);
}

TEST(element_dump, stops_where_an_element_ends) {
    const std::string head = "RSN Information\n\tElement ID:\t\t\t48\n";
    const struct {
        const char* name;
        std::vector<unsigned char> element;
        std::string printed;
    } rows[] = {
        {"head alone", {48, 0}, head + "\tLength:\t\t\t\t0\n"},
        {"version alone", {48, 2, 1, 0}, head + "\tLength:\t\t\t\t2\n\tVersion:\t\t\t1\n"},
    };
    for (const auto& row : rows) {
        int bits = 0;
        EXPECT_EQ(printed_by(parse_rsn_ie, row.element, bits), row.printed) << row.name;
    }
}

} // namespace
