#include "tests/camera_test.h"

#include "libwlan/libwlan.h"

namespace {

const std::string air = R"("air": [
    {"ssid": "weak", "bssid": "02:00:00:00:00:01", "channel": 6, "security": "wpa2", "cipher": "aes", "level": -80},
    {"ssid": "strong", "bssid": "02:00:00:00:00:02", "channel": 1, "security": "open", "level": -40}])";

std::string scene(const std::string& more) {
    return R"({"adapter": "mediatek", )" + more + air + "}";
}

class mtk_survey : public camera_test {
protected:
    lines survey(bool trigger = true) {
        last = watch([&] {
            if (trigger)
                return run_site_survey_mtk(list);
            wlan radio;
            return radio.init() | radio.do_site_survey(list, false) | radio.release();
        });
        lines names;
        for (const sites& site : list)
            names.emplace_back(site.ssid);
        return names;
    }
    std::vector<sites> list;
    outcome last{};
};

TEST_F(mtk_survey, triggers_waits_fetches_and_leaves_the_list_behind) {
    plug_in(scene(""));
    const int before = open_descriptors();
    EXPECT_EQ(survey(), (lines{"strong", "weak"}));
    EXPECT_EQ(last.result, 0);
    EXPECT_EQ(last.err, "");
    EXPECT_EQ(said(), (lines{"system iwpriv ra0 set SiteSurvey=1", "- usleep 4 s", "ra0 survey"}));
    EXPECT_EQ(read("/tmp/ap_list").substr(0, 31), "1   02:00:00:00:00:02 \"strong\" ");
    EXPECT_EQ(open_descriptors(), before);
    EXPECT_EQ(list[1].rssi, 0);
    EXPECT_EQ(std::string(list[1].encryption) + list[1].authentication, "AESWPA2-PSK");

    plug_in(scene(R"("survey_table": 1, )")); // the driver's order, behind what the caller had
    EXPECT_EQ(survey(), (lines{"strong", "weak", "weak", "strong"}));
    EXPECT_EQ(list[2].rssi, -80);
    EXPECT_EQ(list[2].signal, 0);
}

TEST_F(mtk_survey, without_a_trigger_reads_the_table_that_the_driver_holds) {
    plug_in(scene(""));
    EXPECT_EQ(survey(false), lines{});
    EXPECT_EQ(said(), lines{"ra0 survey"});
    EXPECT_EQ(survey(), (lines{"strong", "weak"}));
    list.clear();
    EXPECT_EQ(survey(false), (lines{"strong", "weak"}));
}

TEST_F(mtk_survey, interface_that_it_raised_goes_down_again_unless_the_driver_fails) {
    plug_in(scene(R"("interfaces": {"ra0": {"state": "down"}, "wlan0": {"state": "up"}}, )"));
    EXPECT_EQ(survey(), (lines{"strong", "weak"}));
    EXPECT_EQ(said(), (lines{"system ifconfig ra0 up", "system iwpriv ra0 set SiteSurvey=1", "- usleep 4 s",
                             "ra0 survey", "system ifconfig ra0 down"}));

    plug_in(scene(
        R"("interfaces": {"ra0": {"state": "down"}}, "faults": [{"call": "ioctl", "match": "survey", "errno": "EIO"}], )"));
    write("/tmp/ap_list", "an older list\n");
    list.clear();
    EXPECT_EQ(survey(), lines{});
    EXPECT_EQ(last.result, 0); // callers see it from the empty list
    EXPECT_EQ(last.err, "RTPRIV_IOCTL_GSITESURVEY: Input/output error\n");
    EXPECT_EQ(said().back(), "ra0 survey = EIO");
    EXPECT_EQ(read("/tmp/ap_list"), "");
}

TEST_F(mtk_survey, full_table_without_a_terminator_stays_inside_its_buffer) {
    plug_in(scene(""));
    std::string table = "Ch  SSID\n";
    while (table.size() < 8192)
        table += "6   \"" + std::to_string(table.size()) + std::string(28, 'n') + "\" 02:00:00:00:00:01   " +
                 "WPA2PSK/AES            70       11b/g/n        In\n";
    table.resize(8192);
    write("/answers/survey", table);
    EXPECT_GT(survey().size(), 60U);
    EXPECT_EQ(last.result, -1); // the last line is cut short
}

TEST_F(mtk_survey, entry_point_follows_the_adapter) {
    plug_in(scene(""));
    EXPECT_EQ(watch([&] { return run_site_survey(list); }).result, 0);
    EXPECT_EQ(said().back(), "ra0 survey");
    plug_in(R"({"adapter": "realtek", )" + air + "}");
    EXPECT_EQ(watch([&] { return run_site_survey(list); }).result, 0);
    EXPECT_EQ(said().back(), "wlan0 SIOCGIWRANGE");
    plug_in(scene(R"("faults": [{"call": "socket", "errno": "EMFILE"}], )"));
    EXPECT_EQ(watch([&] { return run_site_survey(list); }).result, -1);
}

} // namespace
