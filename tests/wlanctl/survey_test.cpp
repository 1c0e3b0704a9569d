// SPDX-License-Identifier: MIT
// What `wlanctl survey` tells of the air, and how it looks in terminals.

#include "tests/wlanctl/wlanctl_test.h"

#include <algorithm>
#include <sstream>

namespace {

const access_point far_office = access_point("Office").channel(1).level(-80).wpa2("office-key");
const access_point hidden = access_point("Lager").key("hidden", true).channel(13).level(-66).key("security", "mixed");
const access_point campus = access_point("Campus").channel(6).level(-57).key("security", "wpa2-server");
const access_point printer = access_point("printer").channel(36).level(-90).key("security", "wep");

scene crowded(const scene& camera) {
    return camera.air(far_office).air(hidden).air(campus).air(printer);
}

/// A network of a JSON list on one line.
std::string line_of(const nlohmann::json& network) {
    std::string line;
    for (const auto* field : {"name", "channel", "frequency_mhz", "security", "signal_dbm", "signal_percent"})
        line += (line.empty() ? "" : " ") + network[field].dump();
    return line;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

TEST_F(wlanctl, survey_of_all_leaves_nobody_out) {
    const struct {
        const char* name;
        scene camera;
        std::vector<std::string> list;
    } rows[] = {
        {"MediaTek, version 2",
         crowded(mediatek),
         {R"("Office" 6 2437 "WPA2-PSK AES" null 100)", R"("Campus" 6 2437 "WPA2-EAP AES" null 86)",
          R"(null 13 2472 "WPA-PSK/WPA2-PSK TKIP/AES" null 68)", R"("Office" 1 2412 "WPA2-PSK AES" null 40)",
          R"("printer" 36 5180 "WEP" null 20)"}},
        {"MediaTek, version 1",
         crowded(mediatek).key("survey_table", 1),
         {R"("Office" 6 2437 "WPA2-PSK AES" -40 null)", R"("Campus" 6 2437 "WPA2-EAP AES" -57 null)",
          R"(null 13 2472 "WPA-PSK/WPA2-PSK TKIP/AES" -66 null)", R"("Office" 1 2412 "WPA2-PSK AES" -80 null)",
          R"("printer" 36 5180 "WEP" -90 null)"}},
        {"Realtek",
         crowded(realtek),
         {R"("Office" 6 2437 "WPA2-PSK AES" -40 null)", R"("Campus" 6 2437 "WPA2-EAP AES" -57 null)",
          R"(null 13 2472 "WPA-PSK/WPA2-PSK TKIP/AES" -66 null)", R"("Office" 1 2412 "WPA2-PSK AES" -80 null)",
          R"("printer" 36 5180 "WEP" -90 null)"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        std::vector<std::string> list;
        const auto answer = nlohmann::json::parse(told("survey --all --json"));
        for (const auto& network : answer["networks"])
            list.push_back(line_of(network));
        EXPECT_EQ(list, row.list);
        EXPECT_TRUE(has(told("survey --all"), "(hidden)"));
    }
}

TEST_F(wlanctl, survey_passes_over_what_is_no_line) {
    plug_in(mediatek.key("answers", {{"survey",
                                      {"Ch  SSID", "", "6", "\"", "999 \"a\"", std::string(300, '"'),
                                       "6   \"\033[2J\"" + std::string(29, ' ') + "02:00:5e:00:00:07   NONE" +
                                           std::string(19, ' ') + "70       11b/g/n NONE   In"}}}));
    const auto list = nlohmann::json::parse(told("survey --all --json"))["networks"];
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["name"], "\\x1b[2J");
    EXPECT_EQ(list[0]["bssid"], "02:00:5e:00:00:07");
}

TEST_F(wlanctl, name_of_a_survey_can_be_joined) {
    const access_point odd = access_point().key("ssid_hex", "5c7834312041ff" + std::string(50, '2')).level(-30);
    for (const std::string adapter : {"mediatek", "realtek"}) {
        SCOPED_TRACE(adapter);
        plug_in(scene(adapter).air(odd.wpa2("office-key")));
        const auto networks = nlohmann::json::parse(told("survey --json"))["networks"];
        const std::string name = networks[0]["name"];
        EXPECT_EQ(name, "\\x5cx41 A\\xff" + std::string(25, '"'));
        EXPECT_TRUE(has(told("join '" + name + "' --key office-key"), "done       joined"));
    }
}

TEST_F(wlanctl, fullest_and_clearest_channels_are_told) {
    const access_point loud = access_point("loud").level(-30);
    const access_point faint = access_point("faint").level(-95);
    const struct {
        scene camera;
        int clearest;
        const char* loads; // channel: networks on it + those that reach into it
    } rows[] = {
        {scene("mediatek"), 1, ""},
        {scene("mediatek").air(loud), 6, "1:1+0 2:0+1 3:0+1 4:0+1 5:0+1 "},
        {scene("realtek").air(loud.channel(3)).air(faint.channel(36)), 11,
         "1:0+1 2:0+1 3:1+0 4:0+1 5:0+1 6:0+1 7:0+1 36:1+0 "},
        {scene("realtek").air(loud.channel(14)).air(loud.channel(6)).air(loud.channel(11)).air(faint).air(faint), 1,
         "1:2+0 2:0+3 3:0+3 4:0+3 5:0+3 6:1+0 7:0+2 8:0+2 9:0+2 10:0+2 11:1+0 12:0+2 13:0+2 14:1+0 "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.loads);
        plug_in(row.camera);
        const auto load = nlohmann::json::parse(told("survey --channels --json"));
        EXPECT_EQ(load["clearest"], row.clearest);
        std::string loads;
        for (const auto& channel : load["channels"]) {
            if (channel["networks"] != 0 || channel["overlapping"] != 0) {
                loads += channel["channel"].dump() + ":" + channel["networks"].dump() + "+" +
                         channel["overlapping"].dump() + " ";
            }
        }
        EXPECT_EQ(loads, row.loads);
    }
}

TEST_F(wlanctl, survey_aligns_wide_characters) {
    plug_in(realtek.air(access_point("会議室の二階").level(-50)).air(access_point("Cafe\u0301 📷").level(-60)));
    const struct {
        const char* columns;
        std::vector<const char*> lines;
    } rows[] = {
        {"30", {"Office   6 ", "会議室~  1 ", "Cafe\u0301 📷  1 "}},
        {"31", {"Office     6 ", "会議室の~  1 ", "Cafe\u0301 📷    1 "}},
        {"80", {"Office        02:00:5e:", "会議室の二階  02:", "Cafe\u0301 📷       02:"}},
    };
    for (const auto& row : rows) {
        const terminal terminal(std::string("env LC_ALL=C.UTF-8 NO_COLOR=1 COLUMNS=") + row.columns + " " +
                                command("survey"));
        const std::string shown = terminal.show("nothing that it shows");
        for (const char* line : row.lines)
            EXPECT_TRUE(has(shown, std::string("\n") + line)) << row.columns;
    }
}

TEST_F(wlanctl, survey_fits_the_terminal) {
    plug_in(crowded(realtek).air(access_point("A meeting room, the second floor").level(-50)));
    for (const std::string arguments : {"survey", "survey --all", "survey --channels", "status", "doctor"}) {
        for (const std::size_t columns : {40U, 80U}) {
            SCOPED_TRACE(arguments + " in " + std::to_string(columns));
            const std::string environment = "env NO_COLOR=1 LC_ALL=C COLUMNS=" + std::to_string(columns) + " ";
            const terminal terminal(environment + command(arguments));
            const std::string shown = terminal.show("nothing that it shows");
            const std::size_t progress = shown.rfind("\033[K");
            const std::size_t start = progress == std::string::npos ? 0 : progress + 3;
            const std::string answer =
                shown.substr(start, std::min(shown.find(folder), shown.find("wlanctl: ")) - start);
            for (const std::string& line : lines_of(answer))
                EXPECT_LE(line.size(), columns + 1) << line; // and a carriage return
            EXPECT_EQ(answer.find_first_of("\033\xe2"), std::string::npos);
        }
    }
}

} // namespace
