#include "tests/camera_test.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <set>
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
    std::string security; // "WPA2PSK/AES": authentication and cipher, which stand apart in a version-1 table
    std::string type;
};

std::string row_v1(const heard& site) {
    const std::size_t slash = site.security.find('/');
    return print("%-8d%-8d%-36s%-20s%-12s%-20s%-12s\n", site.channel, site.level, ("\"" + site.name + "\"").c_str(),
                 site.bssid.c_str(), site.security.substr(slash + 1).c_str(), site.security.substr(0, slash).c_str(),
                 site.type.c_str());
}

std::string row_v2(const heard& site) {
    return print("%-4d%-34s %-20s%-23s%-9d%-15s%s\n", site.channel, ("\"" + site.name + "\"").c_str(),
                 site.bssid.c_str(), site.security.c_str(), site.level, "11b/g/n", site.type.c_str());
}

const std::string header_v1 = "Ch      RSSI    SSID\n";
const std::string header_v2 = "Ch  SSID                              BSSID\n";
const std::string bssid = "02:00:00:00:00:01";

/// What reading a driver's table answers and tells, and what it lists.
std::pair<outcome, std::vector<sites>> parse(std::string table, int debug_level = 0) {
    wlan radio;
    radio.debug_level = debug_level;
    radio.site_survey_v2 = 0;
    std::vector<sites> list;
    const outcome run = watch([&] { return radio.parse_site_survey(list, text(table)); });
    return {run, list};
}

bool compare_bssid(sites one, sites other) {
    return std::strcmp(one.bssid, other.bssid) < 0;
}

TEST(survey_table, random_air_reads_as_the_obvious_reading_says) {
    constexpr struct {
        const char *word, *version_1, *version_2; // null when it is not listed
    } securities[] = {
        {"WPA1PSKWPA2PSK/TKIPAES", "TKIPAES|WPA1PSKWPA2PSK", "TKIP/AES|WPA-PSK/WPA2-PSK"},
        {"WPA1PSK/TKIPAES", "TKIPAES|WPA1PSK", "TKIP/AES|WPA-PSK"},
        {"WPAPSK/TKIP", "TKIP|WPAPSK", "TKIP|WPA-PSK"},
        {"WPA2PSK/TKIP", "TKIP|WPA2PSK", "TKIP|WPA2-PSK"},
        {"WPA2PSK/AES", "AES|WPA2PSK", "AES|WPA2-PSK"},
        {"WEP", "WEP|WEP", "WEP|WEPAUTO"},
        {"NONE", "NONE|NONE", "NONE|OPEN"},
        {"WPA/TKIP", nullptr, nullptr},
        {"WPA2/AES", nullptr, nullptr},
        {"WPA1WPA2/TKIPAES", nullptr, nullptr},
        {"UNKNOW", nullptr, nullptr},
    };
    const char* const names[] = {
        "Home", "home", "a \"quoted\" name", " blanks ", "Süd", "32 bytes long, to the last one..", "x", ""};
    for (unsigned seed = 0; seed < 600; ++seed) {
        const bool version_2 = seed % 2 == 1;
        std::mt19937 random(seed);
        const auto pick = [&](int low, int high) { return std::uniform_int_distribution<>(low, high)(random); };
        std::string table = version_2 ? header_v2 : header_v1;
        std::map<std::string, std::pair<int, std::string>> listed; // version 2 lists the strongest of a name
        int result = 0;
        for (int number = 0, count = pick(0, 40); number < count; ++number) {
            const auto& security = securities[pick(0, 10)];
            const int percent = pick(-3, 100);
            const heard site = {pick(-1, 165),     version_2 ? percent : -percent,
                                names[pick(0, 7)], print("02:00:00:00:00:%02x", static_cast<unsigned>(number)),
                                security.word,     pick(0, 9) == 0 ? "Ad" : "In"};
            table += version_2 ? row_v2(site) : row_v1(site);
            const char* words = version_2 ? security.version_2 : security.version_1;
            const std::string key = version_2 ? site.name : site.bssid;
            if (site.channel < 1 || site.name.empty() || words == nullptr ||
                (version_2 ? percent < 0 || site.type != "In" : percent <= 0) ||
                (listed.count(key) != 0 && listed[key].first >= percent)) {
                result = -1;
                continue;
            }
            listed[key] = {percent, print("%s|%s|%s|%s|%d|%d|%d", site.name.c_str(), site.bssid.c_str(), words,
                                          version_2 ? "Infra" : site.type.c_str(), site.channel,
                                          version_2 ? 0 : site.level, version_2 ? percent : 0)};
        }
        std::multiset<std::string> expected;
        for (const auto& [key, site] : listed)
            expected.insert(site.second);
        const auto [run, list] = parse(table);
        EXPECT_EQ(run.result, result);
        const lines found = told(list);
        EXPECT_EQ(std::multiset<std::string>(found.begin(), found.end()), expected) << seed;
        EXPECT_TRUE(std::is_sorted(list.begin(), list.end(), version_2 ? compare_signal : compare_bssid));
    }
}

TEST(survey_table, debug_level_tells_what_is_listed_and_which_networks_are_no_infrastructure) {
    const char* const trace = "%-4d%-8d%-36s%-20s%-12s%-20s%-12s\n";
    const std::string name(32, 'n');
    const std::string v1 = header_v1 + row_v1({6, -70, name, bssid, "WPA2PSK/AES", "Ad"});
    EXPECT_EQ(parse(v1, 1).first.err, print(trace, 6, -70, name.c_str(), bssid.c_str(), "AES", "WPA2PSK", "Ad"));
    const heard net = {6, 60, name, bssid, "WPA2PSK/AES", "In"};
    const heard foreign = {6, 60, name, bssid, "WPA2PSK/AES", "Ad"};
    EXPECT_EQ(parse(header_v2 + row_v2(net) + row_v2(foreign), 1).first.err,
              print(trace, 6, 0, ("\"" + name + "\"").c_str(), bssid.c_str(), "AES", "WPA2-PSK", "Infra") +
                  "parse_element_v2[733] Network type = [Ad], not Infrastruce.\n");
}

TEST(survey_table, broken_tables_change_nothing_but_the_entry_concerned) {
    const std::tuple<std::string, std::string, std::size_t> layouts[] = {
        // Last, the length from which a line counts. A type may be as short as one character in version 1; in version 2
        // the name stands in the list already.
        {header_v1, row_v1({6, -60, "Net", bssid, "WPA2PSK/AES", "Infra"}), 105},
        {header_v2, row_v2({6, 60, "Net", bssid, "WPA2PSK/AES", "In"}), 1000},
    };
    for (const auto& [header, row, whole] : layouts)
        for (std::size_t length = 0; length <= 200; ++length) {
            std::string line = row.substr(0, row.size() - 1);
            line.resize(200, ' ');
            const auto [run, list] = parse(header + line.substr(0, length) + "\n" + row);
            EXPECT_EQ(list.size(), length < whole ? 1U : 2U) << length;
            EXPECT_EQ(run.result, length == 0 || length >= whole ? 0 : -1) << length;
        }
    for (std::size_t length = 1; length < 8; ++length) // too short to tell its layout
        EXPECT_EQ(parse(header_v2.substr(0, length) + "\n" + std::get<1>(layouts[0])).second.size(), 1U) << length;
    for (const char* table : {"", "\n\n", "S", "Ch  SSID", "   \n   \n"}) {
        const auto [run, list] = parse(table);
        EXPECT_EQ(list.size(), 0U);
        EXPECT_EQ(run.result, table[0] == ' ' ? -1 : 0);
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
    const auto store = [&](std::vector<sites> list) { return watch([&] { return radio.store_ap_list(list), 0; }); };
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
