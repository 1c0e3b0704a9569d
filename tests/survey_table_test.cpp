#include "tests/camera_test.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <stdexcept>
#include <tuple>

#include "libwlan/libwlan.h"

namespace {

/// One access point as the driver knows it.
struct heard {
    int channel;
    int level; // dBm in a version-1 table, percent in a version-2 table
    std::string name;
    std::string bssid;
    std::string security; // in a version-1 table cipher and authentication stand apart: "AES WPA2PSK"
    std::string type;
};

std::string row_v1(const heard& site) {
    const std::size_t blank = site.security.find(' ');
    return print("%-8d%-8d%-36s%-20s%-12s%-20s%-12s\n", site.channel, site.level, ("\"" + site.name + "\"").c_str(),
                 site.bssid.c_str(), site.security.substr(0, blank).c_str(), site.security.substr(blank + 1).c_str(),
                 site.type.c_str());
}

std::string row_v2(const heard& site) {
    return print("%-4d%-34s %-20s%-23s%-9d%-15s%s\n", site.channel, ("\"" + site.name + "\"").c_str(),
                 site.bssid.c_str(), site.security.c_str(), site.level, "11b/g/n", site.type.c_str());
}

const std::string header_v1 = "Ch      RSSI    SSID\n";
const std::string header_v2 = "Ch  SSID                              BSSID\n";
const std::string bssid = "02:00:00:00:00:01";

/// What a driver's table becomes.
struct parsed {
    int result;
    std::vector<sites> list;
    std::string err;
};

parsed parse(std::string table, std::vector<sites> list = {}, int debug_level = 0) {
    wlan radio;
    radio.debug_level = debug_level;
    radio.site_survey_v2 = 0;
    const outcome outcome = watch([&] { return radio.parse_site_survey(list, text(table)); });
    return {outcome.result, list, outcome.err};
}

TEST(survey_table, random_air_reads_as_the_obvious_reading_says) {
    constexpr struct {
        const char *word, *cipher, *authentication; // null when it is not listed
    } securities[] = {
        {"WPA1PSKWPA2PSK/TKIPAES", "TKIP/AES", "WPA-PSK/WPA2-PSK"},
        {"WPA1PSK/TKIPAES", "TKIP/AES", "WPA-PSK"},
        {"WPAPSK/TKIP", "TKIP", "WPA-PSK"},
        {"WPA2PSK/TKIP", "TKIP", "WPA2-PSK"},
        {"WPA2PSK/AES", "AES", "WPA2-PSK"},
        {"WEP", "WEP", "WEPAUTO"},
        {"NONE", "NONE", "OPEN"},
        {"WPA2/AES", nullptr, nullptr},
        {"WPA1WPA2/TKIPAES", nullptr, nullptr},
        {"UNKNOW", nullptr, nullptr},
    };
    const char* const names[] = {
        "Home", "home", "a \"quoted\" name", " blanks ", "Süd", "32 bytes long, to the last one..", "x", ""};
    for (unsigned seed = 0; seed < 300; ++seed) {
        std::mt19937 random(seed);
        const auto pick = [&](int low, int high) { return std::uniform_int_distribution<>(low, high)(random); };
        std::string table = header_v2;
        std::map<std::string, std::pair<int, std::string>> strongest;
        int result = 0;
        for (int left = pick(0, 40); left > 0; --left) {
            const auto& security = securities[pick(0, 9)];
            const std::string address = print("02:00:00:00:%02x:%02x", pick(0, 255), pick(0, 255));
            const heard site = {pick(-1, 165), pick(-3, 100), names[pick(0, 7)],
                                address,       security.word, pick(0, 9) == 0 ? "Ad" : "In"};
            table += row_v2(site);
            const bool may_enter = site.channel >= 1 && !site.name.empty() && site.level >= 0 && site.type == "In" &&
                                   security.cipher != nullptr;
            const auto same = strongest.find(site.name);
            if (!may_enter || (same != strongest.end() && same->second.first >= site.level)) {
                result = -1;
                continue;
            }
            strongest[site.name] = {site.level,
                                    print("%s|%s|%s|%s|Infra|%d|0|%d", site.name.c_str(), address.c_str(),
                                          security.cipher, security.authentication, site.channel, site.level)};
        }
        lines expected;
        for (const auto& [name, site] : strongest)
            expected.push_back(site.second);
        const parsed parsed = parse(table);
        EXPECT_EQ(parsed.result, result);
        EXPECT_TRUE(std::is_sorted(parsed.list.begin(), parsed.list.end(), compare_signal));
        lines found = told(parsed.list);
        std::sort(found.begin(), found.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(found, expected) << seed;
    }
}

TEST(survey_table, version_1_keeps_the_driver_s_words_and_order) {
    const heard net = {6, -70, "Net", bssid, "AES WPA2PSK", "Infra"};
    std::string table = header_v1 + row_v1(net) + row_v1({1, -20, "Net", bssid, "TKIPAES WPA1PSKWPA2PSK", "Ad"});
    for (const char* security : {"AES WPA2", "AES WPA", "AES WPA1WPA2", "AES UNKNOW"})
        table += row_v1({6, -1, "server", bssid, security, "Infra"});
    table += row_v1({6, 0, "loud", bssid, "AES WPA2PSK", "Infra"});
    table += row_v1({0, -1, "channel 0", bssid, "AES WPA2PSK", "Infra"});
    table += row_v1({6, -1, "", bssid, "AES WPA2PSK", "Infra"});
    table += row_v1({36, -90, "last", bssid, "NONE OPEN", "Infra"});
    const parsed parsed = parse(table, {}, 1);
    EXPECT_EQ(parsed.result, -1);
    EXPECT_EQ(told(parsed.list), (lines{"Net|" + bssid + "|AES|WPA2PSK|Infra|6|-70|0",
                                        "Net|" + bssid + "|TKIPAES|WPA1PSKWPA2PSK|Ad|1|-20|0",
                                        "last|" + bssid + "|NONE|OPEN|Infra|36|-90|0"}));
    EXPECT_EQ(parsed.err.substr(0, 113),
              print("%-4d%-8d%-36s%-20s%-12s%-20s%-12s\n", 6, -70, "Net", bssid.c_str(), "AES", "WPA2PSK", "Infra"));
}

TEST(survey_table, version_2_tells_what_it_lists_and_which_networks_are_no_infrastructure) {
    const heard net = {6, 60, std::string(32, 'n'), bssid, "WPA2PSK/AES", "In"};
    heard foreign = net;
    foreign.type = "Ad";
    EXPECT_EQ(parse(header_v2 + row_v2(net) + row_v2(foreign), {}, 1).err,
              print("%-4d%-8d%-36s%-20s%-12s%-20s%-12s\n", 6, 0, ("\"" + net.name + "\"").c_str(), bssid.c_str(), "AES",
                    "WPA2-PSK", "Infra") +
                  "parse_element_v2[733] Network type = [Ad], not Infrastruce.\n");
}

TEST(survey_table, broken_tables_change_nothing_but_the_entry_concerned) {
    const std::tuple<std::string, std::string, std::size_t> layouts[] = {
        // Last, the length from which a line counts. A type may be as short as one character in version 1; in version 2
        // the name stands in the list already.
        {header_v1, row_v1({6, -60, "Net", bssid, "AES WPA2PSK", "Infra"}), 105},
        {header_v2, row_v2({6, 60, "Net", bssid, "WPA2PSK/AES", "In"}), 1000},
    };
    for (const auto& [header, row, whole] : layouts)
        for (std::size_t length = 0; length <= 200; ++length) {
            std::string line = row.substr(0, row.size() - 1);
            line.resize(200, ' ');
            const parsed parsed = parse(header + line.substr(0, length) + "\n" + row);
            EXPECT_EQ(parsed.list.size(), length < whole ? 1U : 2U) << length;
            EXPECT_EQ(parsed.result, length == 0 || length >= whole ? 0 : -1) << length;
        }
    for (std::size_t length = 1; length < 8; ++length) // too short to tell its layout
        EXPECT_EQ(parse(header_v2.substr(0, length) + "\n" + std::get<1>(layouts[0])).list.size(), 1U) << length;
    for (const char* table : {"", "\n\n", "S", "Ch  SSID", "   \n   \n"}) {
        const parsed parsed = parse(table);
        EXPECT_EQ(parsed.list.size(), 0U);
        EXPECT_EQ(parsed.result, table[0] == ' ' ? -1 : 0);
    }
    wlan radio;
    std::vector<sites> list;
    EXPECT_EQ(radio.parse_site_survey(list, nullptr), -1);
}

TEST(survey_table, names_lose_their_quotes_and_nothing_else) {
    wlan radio;
    const std::pair<const char*, const char*> names[] = {
        {"\"a \"b\" c\"  ", "a \"b\" c"}, {"xno quote  ", "no quote  "}, {"\"only one", "only one"}, {"\"\"", ""}};
    for (const auto& [column, name] : names) {
        std::string text = column;
        radio.trimForSSID(text);
        EXPECT_EQ(text, name);
    }
    std::string empty;
    EXPECT_THROW(radio.trimForSSID(empty), std::out_of_range);
    std::string blanks = " \t\na b\r\n ";
    radio.trim(blanks);
    EXPECT_EQ(blanks, "a b\r");
}

TEST(survey_orders, look_at_one_thing_only) {
    const sites strong{"HOME", "", "", "", "", 0, 0, 80};
    const sites weak{"home", "", "", "", "", 0, 100, 20};
    EXPECT_TRUE(compare_signal(strong, weak));
    EXPECT_FALSE(compare_signal(weak, strong) || compare_signal(weak, weak));
    EXPECT_FALSE(compare_by_ssid(strong, weak) || compare_by_ssid(weak, strong));
    EXPECT_TRUE(compare_by_ssid({"Alpha", "", "", "", "", 0, 0, 0}, weak));
}

using ap_list = camera_test;

TEST_F(ap_list, file_holds_the_list_as_it_stands) {
    plug_in(R"({"adapter": "mediatek", "faults": [{"call": "open", "match": "ap_list", "nth": 3, "errno": "EROFS"}]})");
    wlan radio;
    const auto store = [&](std::vector<sites> list) {
        return watch([&] {
            radio.store_ap_list(list);
            return 0;
        });
    };
    store({{"Net", "02:00:00:00:00:01", "", "", "", 6, 0, 0},
           {"a name of 35 characters, to the end", "", "", "", "", 100, 0, 0}});
    EXPECT_EQ(read("/tmp/ap_list"), "6   " + bssid + " \"Net\"" + std::string(27, ' ') + "\n" + "100 " +
                                        std::string(17, ' ') + " \"a name of 35 characters, to the end\"\n");
    store({});
    EXPECT_TRUE(exists("/tmp/ap_list"));
    EXPECT_EQ(read("/tmp/ap_list"), "");
    EXPECT_EQ(store({}), (outcome{0, "", "Open /tmp/ap_list fail: Read-only file system\n"}));
}

} // namespace
