// SPDX-License-Identifier: MIT
// The MediaTek driver's survey table: what its lines, also broken ones, are read as.

#include "tests/support/camera_test.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>

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

/// What reading a driver's table answers and prints, and what it lists.
struct reading {
    outcome run;
    std::vector<sites> list;
};

reading parse(std::string table, int debug_level = 0) {
    wlan radio;
    radio.debug_level = debug_level;
    radio.site_survey_v2 = 0;
    reading reading{};
    reading.run = watch([&] { return radio.parse_site_survey(reading.list, text(table)); });
    return reading;
}

TEST(survey_table, debug_level_prints_what_is_listed) {
    const std::string name(32, 'n');
    const std::string v1 = header_v1 + row_v1({6, -70, name, bssid, "WPA2PSK/AES", "Ad"});
    EXPECT_EQ(parse(v1, 1).run.err,
              "6   -70     " + name + "    02:00:00:00:00:01   AES         WPA2PSK             Ad          \n");
    const std::string v2 = header_v2 + row_v2({6, 60, name, bssid, "WPA2PSK/AES", "In"});
    EXPECT_EQ(parse(v2, 1).run.err,
              "6   0       \"" + name + "\"  02:00:00:00:00:01   AES         WPA2-PSK            Infra       \n");
    EXPECT_EQ(parse(v1, 0).run.err, "");
    EXPECT_EQ(parse(v2, 0).run.err, "");
}

TEST(survey_table, ad_hoc_network_is_refused_aloud) {
    const reading read = parse(header_v2 + row_v2({6, 60, "Net", bssid, "WPA2PSK/AES", "Ad"}));
    EXPECT_EQ(read.run, (outcome{-1, "", "parse_element_v2[733] Network type = [Ad], not Infrastruce.\n"}));
    EXPECT_EQ(names(read.list), lines{});
}

TEST(survey_table, line_cut_short_is_dropped_alone) {
    const struct {
        const char* name;
        std::string header;
        std::string row;
        std::size_t whole; // the length from which a line counts
    } layouts[] = {
        // A type may be as short as one character.
        {"version 1", header_v1, row_v1({6, -60, "Net", bssid, "WPA2PSK/AES", "Infra"}), 105},
        // It never counts, since the line before it lists the name already.
        {"version 2", header_v2, row_v2({6, 60, "Net", bssid, "WPA2PSK/AES", "In"}), 1000},
    };
    for (const auto& layout : layouts) {
        for (std::size_t length = 0; length <= 200; ++length) {
            SCOPED_TRACE(print("%s, %zu characters", layout.name, length));
            std::string line = layout.row.substr(0, layout.row.size() - 1);
            line.resize(200, ' ');
            const reading read = parse(layout.header + line.substr(0, length) + "\n" + layout.row);
            const bool empty = length == 0; // which is no line
            const bool counts = length >= layout.whole;
            EXPECT_EQ(read.run.result, empty || counts ? 0 : -1);
            EXPECT_EQ(read.list.size(), counts ? 2U : 1U);
        }
    }
}

TEST(survey_table, header_too_short_means_version_1) {
    for (std::size_t length = 1; length < 8; ++length) {
        SCOPED_TRACE(length);
        const std::string row = row_v1({6, -60, "Net", bssid, "WPA2PSK/AES", "Infra"});
        EXPECT_EQ(names(parse(header_v2.substr(0, length) + "\n" + row).list), lines{"Net"});
    }
}

TEST(survey_table, table_without_rows_lists_nothing) {
    const struct {
        const char* name;
        const char* table;
        int result;
    } rows[] = {
        {"empty", "", 0},
        {"line feeds", "\n\n", 0},
        {"one character", "S", 0},
        {"header alone", "Ch  SSID", 0},
        {"a row of blanks", "   \n   \n", -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const reading read = parse(row.table);
        EXPECT_EQ(read.run.result, row.result);
        EXPECT_EQ(read.list.size(), 0U);
    }
}

/// A field of a record, also one that is full and has no terminator.
template <std::size_t size>
std::string field(const char (&text)[size]) {
    return {text, strnlen(text, size)};
}

TEST(survey_table, full_columns_do_not_run_together) {
    const std::string name(35, 'n');
    const std::string address(20, 'b');
    const std::string cipher(12, 'c');
    const std::string authentication(20, 'a');
    const std::string type(12, 't');
    const reading read = parse(header_v1 + "12345678-12345678" + name + address + cipher + authentication + type + "x");
    ASSERT_EQ(read.list.size(), 1U);
    const sites& site = read.list[0];
    EXPECT_EQ(site.channel, 12345678);
    EXPECT_EQ(site.rssi, -1234567);
    EXPECT_EQ(site.ssid, name);
    EXPECT_EQ(field(site.bssid), address);
    EXPECT_EQ(field(site.encryption), cipher);
    EXPECT_EQ(field(site.authentication), authentication);
    EXPECT_EQ(field(site.network_type), type);
}

TEST(survey_table, full_columns_of_version_2_neither) {
    const std::string name(33, 'n');
    const std::string address(20, 'b');
    const std::string mode(14, 'm');
    const struct {
        const char* name;
        const char* security; // and the signal, with which it shares a column
        const char* encryption;
        int signal;
    } rows[] = {
        {"signal", "WPA2PSK/AES            1234567890", "AES", 123456789},
        {"security", "WPA2PSK              AES         ", "AES", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const reading read = parse(header_v2 + "12345" + name + "x" + address + row.security + mode + "Inx");
        ASSERT_EQ(read.list.size(), 1U);
        const sites& site = read.list[0];
        EXPECT_EQ(site.channel, 1234);
        EXPECT_EQ(site.ssid, name);
        EXPECT_EQ(field(site.bssid), address);
        EXPECT_STREQ(site.encryption, row.encryption);
        EXPECT_EQ(site.signal, row.signal);
    }
}

TEST(survey_table, single_lines_lose_their_blanks) {
    const std::string v1 = row_v1({6, -70, "Net", bssid, "WPA2PSK/AES", "In"});
    const std::string v2 = row_v2({6, 60, "Net", bssid, "WPA2PSK/AES", "In"});
    wlan radio;
    radio.debug_level = 0;
    std::vector<sites> list;
    EXPECT_EQ(radio.parse_element(list, " \t" + v1), 0);
    EXPECT_EQ(told(list), lines{"Net|02:00:00:00:00:01|AES|WPA2PSK|In|6|-70|0"});
    list.clear();
    EXPECT_EQ(radio.parse_element_v2(list, "\n " + v2), 0);
    EXPECT_EQ(told(list), lines{"Net|02:00:00:00:00:01|AES|WPA2-PSK|Infra|6|0|60"});
}

TEST(survey_table, no_table_is_refused) {
    wlan radio;
    std::vector<sites> list;
    EXPECT_EQ(radio.parse_site_survey(list, nullptr), -1);
}

TEST(survey_table, names_lose_their_quotes_alone) {
    const struct {
        const char* column;
        const char* name;
    } rows[] = {
        {"\"a \"b\" c\"  ", "a \"b\" c"}, {"xno quote  ", "no quote  "}, {"\"only one", "only one"}, {"\"\"", ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.column);
        std::string text = row.column;
        wlan().trimForSSID(text);
        EXPECT_EQ(text, row.name);
    }
}

TEST(survey_table, empty_name_column_throws) {
    std::string empty;
    EXPECT_THROW(wlan().trimForSSID(empty), std::out_of_range);
}

TEST(survey_table, carriage_return_is_no_blank) {
    std::string text = " \t\na b\r\n ";
    wlan().trim(text);
    EXPECT_EQ(text, "a b\r");
}

// Random air
// --------------------------------------------------------------------------------------------------------------------

/// The driver's security texts, and how each table's are listed; null when they are not.
constexpr struct {
    const char *word, *version_1, *version_2;
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

/// A table of random rows, and what reading it should give: each network once, whether any was refused.
struct random_table {
    random_table(unsigned seed, bool version_2) : text(version_2 ? header_v2 : header_v1), random_(seed) {
        for (int number = 0, count = pick(0, 40); number < count; ++number)
            version_2 ? add_v2(number) : add_v1(number);
    }

    std::string text;
    std::map<std::string, std::pair<int, std::string>> listed; // by BSSID, in version 2 by name
    int result = 0;

private:
    int pick(int low, int high) { return std::uniform_int_distribution<>(low, high)(random_); }

    heard pick_site(int number, const char* security) {
        const char* const names[] = {
            "Home", "home", "a \"quoted\" name", " blanks ", "Süd", "32 bytes long, to the last one..", "x", ""};
        return {pick(-1, 165),     pick(-3, 100),
                names[pick(0, 7)], print("02:00:00:00:00:%02x", static_cast<unsigned>(number)),
                security,          pick(0, 9) == 0 ? "Ad" : "In"};
    }

    void add_v1(int number) {
        const auto& security = securities[pick(0, 10)];
        heard site = pick_site(number, security.word);
        site.level = -site.level;
        text += row_v1(site);
        if (site.channel < 1 || site.name.empty() || security.version_1 == nullptr || site.level >= 0) {
            result = -1;
            return;
        }
        listed[site.bssid] = {0, print("%s|%s|%s|%s|%d|%d|0", site.name.c_str(), site.bssid.c_str(), security.version_1,
                                       site.type.c_str(), site.channel, site.level)};
    }

    void add_v2(int number) {
        const auto& security = securities[pick(0, 10)];
        const heard site = pick_site(number, security.word);
        text += row_v2(site);
        const auto same_name = listed.find(site.name);
        if (site.channel < 1 || site.name.empty() || security.version_2 == nullptr || site.level < 0 ||
            site.type != "In" || (same_name != listed.end() && same_name->second.first >= site.level)) {
            result = -1;
            return;
        }
        listed[site.name] = {site.level, print("%s|%s|%s|Infra|%d|0|%d", site.name.c_str(), site.bssid.c_str(),
                                               security.version_2, site.channel, site.level)};
    }

    std::mt19937 random_;
};

bool compare_bssid(const sites& one, const sites& other) {
    return std::strcmp(one.bssid, other.bssid) < 0;
}

class random_survey_table : public testing::TestWithParam<bool> {};

TEST_P(random_survey_table, is_read_the_obvious_way) {
    const bool version_2 = GetParam();
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        const random_table table(seed, version_2);
        std::multiset<std::string> expected;
        for (const auto& [key, site] : table.listed)
            expected.insert(site.second);
        const reading read = parse(table.text);
        const lines found = told(read.list);
        EXPECT_EQ(read.run.result, table.result);
        EXPECT_EQ(std::multiset<std::string>(found.begin(), found.end()), expected);
        if (version_2) {
            EXPECT_TRUE(std::is_sorted(read.list.begin(), read.list.end(), compare_signal));
        } else {
            EXPECT_TRUE(std::is_sorted(read.list.begin(), read.list.end(), compare_bssid)); // the driver's order
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, random_survey_table, testing::Bool(),
                         [](const auto& version_2) { return version_2.param ? "version_2" : "version_1"; });

// Orders, and the list file
// --------------------------------------------------------------------------------------------------------------------

const sites strong{"HOME", "", "", "", "", 0, 0, 80};
const sites weak{"home", "", "", "", "", 0, 100, 20};

TEST(survey_orders, compare_signal_looks_at_the_signal) {
    EXPECT_TRUE(compare_signal(strong, weak));
    EXPECT_FALSE(compare_signal(weak, strong));
    EXPECT_FALSE(compare_signal(weak, weak));
}

TEST(survey_orders, compare_by_ssid_ignores_case) {
    const sites alpha{"Alpha", "", "", "", "", 0, 0, 0};
    EXPECT_TRUE(compare_by_ssid(alpha, weak));
    EXPECT_FALSE(compare_by_ssid(weak, alpha));
    EXPECT_FALSE(compare_by_ssid(strong, weak));
    EXPECT_FALSE(compare_by_ssid(weak, strong));
}

class ap_list : public camera_test {
protected:
    static outcome store(std::vector<sites> list) {
        return watch([&] {
            wlan().store_ap_list(list);
            return 0;
        });
    }
};

TEST_F(ap_list, file_holds_the_list_as_it_stands) {
    plug_in(scene("mediatek"));
    EXPECT_EQ(store({{"Net", "02:00:00:00:00:01", "", "", "", 6, 0, 0},
                     {"a name of 35 characters, to the end", "", "", "", "", 100, 0, 0}}),
              (outcome{0, "", ""}));
    EXPECT_EQ(read("/tmp/ap_list"), "6   02:00:00:00:00:01 \"Net\"                           \n"
                                    "100                   \"a name of 35 characters, to the end\"\n");
}

TEST_F(ap_list, empty_list_empties_the_file) {
    plug_in(scene("mediatek"));
    write("/tmp/ap_list", "an older list\n");
    EXPECT_EQ(store({}), (outcome{0, "", ""}));
    EXPECT_TRUE(exists("/tmp/ap_list"));
    EXPECT_EQ(read("/tmp/ap_list"), "");
}

TEST_F(ap_list, file_that_cannot_be_written_is_told) {
    plug_in(scene("mediatek").fault("open", "EROFS").match("ap_list"));
    EXPECT_EQ(store({}), (outcome{0, "", "Open /tmp/ap_list fail: Read-only file system\n"}));
}

} // namespace
