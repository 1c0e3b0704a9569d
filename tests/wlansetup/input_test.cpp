// SPDX-License-Identifier: MIT
// What comes in through HTTP is judged by its bytes.

#include <gtest/gtest.h>

#include "input.h"

namespace {

using nlohmann::json;

const std::vector<std::string> names = {"camera.lan", "192.168.8.1"};

TEST(input_test, knows_its_own_host) {
    const struct {
        const char* host;
        int port;
        bool own;
    } rows[] = {
        {"192.168.8.1", 80, true},
        {"192.168.8.1:80", 80, true},
        {"Camera.LAN", 80, true},
        {"192.168.8.1", 8080, false},
        {"192.168.8.1:8080", 8080, true},
        {"192.168.8.1:8080", 80, false},
        {"192.168.8.10", 80, false},
        {"92.168.8.1", 80, false},
        {"", 80, false},
        {"evil.example", 80, false},
        {"192.168.8.1.evil.example", 80, false},
        {"user@192.168.8.1", 80, false},
        {"192.168.8.1:", 80, false},
        {"192.168.8.1 ", 80, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(is_own_host(row.host, names, row.port), row.own) << row.host << " at " << row.port;
        EXPECT_EQ(is_own_origin(std::string("http://") + row.host, names, row.port), row.own) << row.host;
    }
    for (const char* origin : {"null", "", "http:/", "https://192.168.8.1", "192.168.8.1", "http://192.168.8.1/"})
        EXPECT_FALSE(is_own_origin(origin, names, 80)) << origin;
}

TEST(input_test, takes_back_what_wlanctl_escapes) {
    EXPECT_EQ(unescape("Office"), "Office");
    EXPECT_EQ(unescape("\\xff\\x00a\\x5cx41"), std::string("\xff\0a\\x41", 7));
    EXPECT_EQ(unescape("\\x4"), "\\x4");
    EXPECT_EQ(unescape("\\xg0\\"), "\\xg0\\");
    EXPECT_EQ(from_hex("00fF"), std::string("\0\xff", 2));
    EXPECT_EQ(from_hex("0"), std::nullopt);
    EXPECT_EQ(from_hex("0g"), std::nullopt);
}

TEST(input_test, reads_what_to_join) {
    const std::vector<network> listed = {{"Office", "Office", "WPA2-PSK AES", 4, 6},
                                         {"Visitors", "Visitors", "OPEN", 3, 6},
                                         {"old", "old", "WEP", 1, 6}};
    const std::string letters(63, 'k');
    const struct {
        const char* name;
        json told;
        const char* result; ///< the problem, or authentication and cipher
    } rows[] = {
        {"listed", {{"ssid_hex", "4f6666696365"}, {"key", "12345678"}}, "wpa2psk aes"},
        {"listed by name", {{"name", "Office"}, {"key", letters}}, "wpa2psk aes"},
        {"raw key", {{"name", "Office"}, {"key", std::string(64, 'a')}}, "wpa2psk aes"},
        {"open", {{"ssid_hex", "56697369746f7273"}}, "open none"},
        {"WEP", {{"name", "old"}, {"key", "12345"}}, "wep wep"},
        {"hidden", {{"name", "Lager"}, {"key", "12345678"}}, "wpa2psk aes"},
        {"hidden and open", {{"name", "Lager"}, {"key", ""}}, "open none"},
        {"32 bytes", {{"ssid_hex", std::string(64, 'f')}, {"key", "12345678"}}, "wpa2psk aes"},
        {"33 bytes", {{"ssid_hex", std::string(66, 'f')}, {"key", "12345678"}}, "name_length"},
        {"no name", {{"key", "12345678"}}, "name_missing"},
        {"empty name", {{"name", ""}}, "name_missing"},
        {"two names", {{"name", "a"}, {"ssid_hex", "61"}}, "name_missing"},
        {"name is a number", {{"name", 7}}, "name_missing"},
        {"no hexadecimal", {{"ssid_hex", "4g"}}, "name_missing"},
        {"no key", {{"name", "Office"}}, "key_missing"},
        {"key is an object", {{"name", "Office"}, {"key", json::object()}}, "key_missing"},
        {"short", {{"name", "Office"}, {"key", "1234567"}}, "key_length"},
        {"long", {{"name", "Office"}, {"key", letters + "k"}}, "key_length"},
        {"line feed", {{"name", "Office"}, {"key", "1234567\n"}}, "key_characters"},
        {"NUL", {{"name", "Office"}, {"key", std::string("1234567\0", 8)}}, "key_characters"},
        {"WEP of six", {{"name", "old"}, {"key", "123456"}}, "key_length_wep"},
    };
    for (const auto& row : rows) {
        std::string problem;
        const auto read = read_join(row.told, listed, problem);
        EXPECT_EQ(read ? read->how.auth + " " + read->how.enc : problem, row.result) << row.name;
    }
}

TEST(input_test, reads_bodies_that_are_objects) {
    EXPECT_EQ(read_object(R"({"a": 1})"), (json{{"a", 1}}));
    for (const char* body : {"", "null", "[]", "{", R"({"a": 1}x)", "\xff", "{\"a\": \"\xff\"}", "name=Office"})
        EXPECT_TRUE(read_object(body).is_null()) << body;
    EXPECT_TRUE(read_object(std::string(longest_body + 1, ' ') + "{}").is_null());
    EXPECT_TRUE(read_object(std::string(longest_body, '[')).is_null());
}

TEST(input_test, lists_each_name_once_strongest_first) {
    const json outcome = {{"networks",
                           {{{"name", "far"}, {"signal_dbm", -90}},
                            {{"name", "near"}, {"signal_percent", 30}, {"security", "WPA2PSK TKIP"}},
                            {{"name", "near"}, {"signal_percent", 99}, {"security", "WPA2PSK AES"}},
                            {{"name", "middle"}, {"signal_dbm", -70}, {"channel", nullptr}},
                            {{"name", ""}},
                            {{"name", std::string(33, 'x')}},
                            {{"name", 5}},
                            "text",
                            nullptr}}};
    std::string told;
    for (const network& listed : read_networks(outcome))
        told += listed.name + ":" + std::to_string(listed.bars) + ":" + security_of(listed.security_text).enc + " ";
    EXPECT_EQ(told, "near:4:aes middle:3:none far:1:none ");
    EXPECT_TRUE(read_networks({{"networks", "none"}}).empty());
}

TEST(input_test, compares_codes_whole) {
    EXPECT_TRUE(is_code("4711", "4711"));
    for (const char* wrong : {"", "471", "47110", "4712", "0711"})
        EXPECT_FALSE(is_code(wrong, "4711")) << wrong;
}

} // namespace
