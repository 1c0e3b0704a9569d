#include "tests/camera_test.h"

#include <algorithm>
#include <cstring>
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

template <typename... Arguments>
std::string print(const char* format, Arguments... arguments) {
    char line[256];
    std::snprintf(line, sizeof line, format, arguments...);
    return line;
}

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

using listed = std::tuple<std::string, std::string, std::string, std::string, std::string, int, int, int>;

listed told(const sites& site) {
    return {site.ssid,         site.bssid,   site.encryption, site.authentication,
            site.network_type, site.channel, site.rssi,       site.signal};
}

/// What a driver's table becomes.
struct parsed {
    int result;
    std::vector<listed> list;
    std::string err;
};

parsed parse(std::string table, std::vector<sites> list = {}, int debug_level = 0) {
    wlan radio;
    radio.debug_level = debug_level;
    radio.site_survey_v2 = 0;
    parsed parsed;
    parsed.err = watch([&] { return parsed.result = radio.parse_site_survey(list, table.data()); }).err;
    std::transform(list.begin(), list.end(), std::back_inserter(parsed.list), told);
    return parsed;
}

// The reading below is slow and obvious on purpose: it judges the library's.

bool may_enter(const heard& site, bool v2) {
    const auto has = [&](const char* word) { return site.security.find(word) != std::string::npos; };
    if (site.channel < 1 || site.name.empty() || site.bssid.empty())
        return false;
    if (v2)
        return site.level >= 0 && (has("PSK") || has("NONE") || has("WEP")) && site.type == "In";
    const std::string authentication = site.security.substr(site.security.find(' ') + 1);
    return site.level < 0 && authentication != "WPA" && authentication != "WPA2" && authentication != "WPA1WPA2" &&
           authentication != "UNKNOW";
}

listed judge_v2(const heard& site) {
    const auto has = [&](const char* word) { return site.security.find(word) != std::string::npos; };
    const char* cipher = has("TKIPAES") ? "TKIP/AES"
                         : has("AES")   ? "AES"
                         : has("TKIP")  ? "TKIP"
                         : has("WEP")   ? "WEP"
                                        : "NONE";
    const char* auth = has("WPA1PSKWPA2PSK") ? "WPA-PSK/WPA2-PSK"
                       : has("WPA2PSK")      ? "WPA2-PSK"
                       : has("PSK")          ? "WPA-PSK"
                       : has("NONE")         ? "OPEN"
                                             : "WEPAUTO";
    return {site.name, site.bssid, cipher, auth, "Infra", site.channel, 0, site.level};
}

std::vector<heard> random_air(unsigned seed) {
    std::mt19937 random(seed);
    const auto pick = [&](int low, int high) { return std::uniform_int_distribution<>(low, high)(random); };
    const char* const securities[] = {"WPA1PSKWPA2PSK/TKIPAES", "WPA2PSK/AES", "WPA2PSK/TKIP", "WPAPSK/TKIP",
                                      "WPA1PSK/TKIPAES",        "WEP",         "NONE",         "WPA2/AES",
                                      "WPA1WPA2/TKIPAES",       "UNKNOW"};
    const char* const names[] = {
        "Home", "home", "a \"quoted\" name", " blanks ", "Süd", "32 bytes long, to the last one..", "x", ""};
    std::vector<heard> air(static_cast<std::size_t>(pick(0, 40)));
    for (heard& site : air)
        site = {pick(-1, 165),          pick(-3, 100),
                names[pick(0, 7)],      print("02:00:00:00:%02x:%02x", pick(0, 255), pick(0, 255)),
                securities[pick(0, 9)], pick(0, 9) == 0 ? "Ad" : "In"};
    return air;
}

TEST(survey_table, random_air_reads_as_the_obvious_reading_says) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        std::string table = header_v2;
        std::vector<listed> expected;
        int result = 0;
        for (const heard& site : random_air(seed)) {
            table += row_v2(site);
            const auto same = std::find_if(expected.begin(), expected.end(),
                                           [&](const listed& other) { return std::get<0>(other) == site.name; });
            if (!may_enter(site, true) || (same != expected.end() && std::get<7>(*same) >= site.level)) {
                result = -1;
                continue;
            }
            if (same != expected.end())
                expected.erase(same);
            expected.push_back(judge_v2(site));
        }
        parsed parsed = parse(table);
        EXPECT_EQ(parsed.result, result);
        EXPECT_TRUE(std::is_sorted(parsed.list.begin(), parsed.list.end(),
                                   [](const listed& a, const listed& b) { return std::get<7>(a) > std::get<7>(b); }));
        std::sort(parsed.list.begin(), parsed.list.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(parsed.list, expected);
    }
}

TEST(survey_table, version_1_keeps_the_driver_s_words_and_order) {
    const std::vector<heard> air = {
        {6, -70, "Net", bssid, "AES WPA2PSK", "Infra"},    {1, -20, "Net", bssid, "TKIPAES WPA1PSKWPA2PSK", "Ad"},
        {6, 0, "loud", bssid, "AES WPA2PSK", "Infra"},     {0, -1, "channel 0", bssid, "AES WPA2PSK", "Infra"},
        {6, -1, "server", bssid, "AES WPA2", "Infra"},     {6, -1, "server", bssid, "AES WPA", "Infra"},
        {6, -1, "server", bssid, "AES WPA1WPA2", "Infra"}, {6, -1, "unknown", bssid, "AES UNKNOW", "Infra"},
        {6, -1, "", bssid, "AES WPA2PSK", "Infra"},        {36, -90, "last", bssid, "NONE OPEN", "Infra"},
    };
    std::string table = header_v1;
    for (const heard& site : air)
        table += row_v1(site);
    const parsed parsed = parse(table, {}, 1);
    EXPECT_EQ(parsed.result, -1);
    EXPECT_EQ(parsed.list, (std::vector<listed>{{"Net", bssid, "AES", "WPA2PSK", "Infra", 6, -70, 0},
                                                {"Net", bssid, "TKIPAES", "WPA1PSKWPA2PSK", "Ad", 1, -20, 0},
                                                {"last", bssid, "NONE", "OPEN", "Infra", 36, -90, 0}}));
    EXPECT_EQ(parsed.err.substr(0, 113),
              print("%-4d%-8d%-36s%-20s%-12s%-20s%-12s\n", 6, -70, "Net", bssid.c_str(), "AES", "WPA2PSK", "Infra"));
}

TEST(survey_table, version_2_tells_what_it_lists_and_which_networks_are_no_infrastructure) {
    const heard net = {6, 60, std::string(32, 'n'), bssid, "WPA2PSK/AES", "In"};
    heard foreign = net;
    foreign.type = "Ad";
    const parsed parsed = parse(header_v2 + row_v2(net) + row_v2(foreign), {}, 1);
    EXPECT_EQ(parsed.result, -1);
    EXPECT_EQ(parsed.err, print("%-4d%-8d%-36s%-20s%-12s%-20s%-12s\n", 6, 0, ("\"" + net.name + "\"").c_str(),
                                bssid.c_str(), "AES", "WPA2-PSK", "Infra") +
                              "parse_element_v2[733] Network type = [Ad], not Infrastruce.\n");
}

TEST(survey_table, a_stronger_entry_takes_the_place_of_one_listed_before) {
    sites old{};
    std::strcpy(old.ssid, "Net");
    old.signal = 60;
    for (const int signal : {40, 60, 80}) {
        const parsed parsed = parse(header_v2 + row_v2({1, signal, "Net", bssid, "NONE", "In"}), {old});
        EXPECT_EQ(parsed.result, signal > 60 ? 0 : -1);
        ASSERT_EQ(parsed.list.size(), 1U);
        EXPECT_EQ(std::get<7>(parsed.list[0]), signal > 60 ? 80 : 60);
    }
}

TEST(survey_table, broken_tables_change_nothing_but_the_entry_concerned) {
    const heard good = {6, 60, "Net", bssid, "WPA2PSK/AES", "In"};
    for (const std::string& header : {header_v1, header_v2}) {
        const bool v2 = header == header_v2;
        heard site = good;
        if (!v2) {
            site.level = -60;
            site.security = "AES WPA2PSK";
        }
        const std::string row = v2 ? row_v2(site) : row_v1(site);
        for (std::size_t length = 0; length <= 200; ++length) {
            std::string line = (row.substr(0, row.size() - 1) + std::string(200, ' ')).substr(0, length);
            const std::size_t whole = v2 ? 108U : 105U; // a version-1 type may be as short as one character
            const parsed parsed = parse(header + line + "\n" + row);
            EXPECT_EQ(parsed.list.size(), v2 || length < whole ? 1U : 2U) << length;
            EXPECT_EQ(parsed.result, length == 0 || (!v2 && length >= whole) ? 0 : -1) << length;
        }
    }
    for (const char* table : {"", "\n\n", "S", "Ch  SSID", "   \n   \n"}) {
        EXPECT_EQ(parse(table).list.size(), 0U);
        EXPECT_EQ(parse(table).result, table[0] == ' ' ? -1 : 0);
    }
    wlan radio;
    std::vector<sites> list;
    EXPECT_EQ(radio.parse_site_survey(list, nullptr), -1);
}

TEST(survey_table, names_lose_their_quotes_and_nothing_else) {
    wlan radio;
    const std::pair<std::string, std::string> names[] = {{"\"a\"  ", "a"},
                                                         {"\"a \"b\" c\"", "a \"b\" c"},
                                                         {"xno quote  ", "no quote  "},
                                                         {"\"only one", "only one"},
                                                         {"\"\"", ""}};
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
    sites strong{};
    sites weak{};
    strong.signal = 80;
    weak.signal = 20;
    weak.rssi = 100;
    std::strcpy(strong.ssid, "HOME");
    std::strcpy(weak.ssid, "home");
    EXPECT_TRUE(compare_signal(strong, weak));
    EXPECT_FALSE(compare_signal(weak, strong) || compare_signal(weak, weak));
    EXPECT_FALSE(compare_by_ssid(strong, weak) || compare_by_ssid(weak, strong));
    std::strcpy(strong.ssid, "Alpha");
    EXPECT_TRUE(compare_by_ssid(strong, weak));
}

using ap_list = camera_test;

TEST_F(ap_list, file_holds_the_list_as_it_stands) {
    plug_in(R"({"adapter": "mediatek"})");
    wlan radio;
    std::vector<sites> list(2);
    list[0].channel = 6;
    std::strcpy(list[0].bssid, bssid.c_str());
    std::strcpy(list[0].ssid, "Net");
    list[1].channel = 100;
    std::strcpy(list[1].ssid, "a name of 35 characters, to the end");
    radio.store_ap_list(list);
    EXPECT_EQ(read("/tmp/ap_list"), "6   " + bssid + " \"Net\"" + std::string(27, ' ') + "\n" + "100 " +
                                        std::string(17, ' ') + " \"a name of 35 characters, to the end\"\n");
    list.clear();
    radio.store_ap_list(list);
    EXPECT_TRUE(exists("/tmp/ap_list"));
    EXPECT_EQ(read("/tmp/ap_list"), "");

    plug_in(R"({"adapter": "mediatek", "faults": [{"call": "open", "match": "ap_list", "errno": "EROFS"}]})");
    EXPECT_EQ(watch([&] {
                  radio.store_ap_list(list);
                  return 0;
              }).err,
              "Open /tmp/ap_list fail: Read-only file system\n");
}

} // namespace
