#include "tests/camera_test.h"

#include "libwlan/libwlan.h"

namespace {

const std::string air = R"("air": [
    {"ssid": "weak", "bssid": "02:00:00:00:00:01", "channel": 6, "security": "wpa2", "cipher": "aes", "level": -80},
    {"ssid": "strong", "bssid": "02:00:00:00:00:02", "channel": 1, "security": "open", "level": -40}])";

std::string scene(const std::string& more = "") {
    return R"({"adapter": "mediatek", )" + more + air + "}";
}

class mtk_survey : public camera_test {
protected:
    lines survey(bool trigger = true) {
        last = watch([&] {
            if (trigger)
                return run_site_survey(list);
            wlan radio;
            return radio.init() | radio.do_site_survey(list, false) | radio.release();
        });
        return names(list);
    }
    std::vector<sites> list;
    outcome last{};
};

TEST_F(mtk_survey, triggers_waits_fetches_and_leaves_the_list_behind) {
    plug_in(scene());
    EXPECT_EQ(survey(), (lines{"strong", "weak"}));
    EXPECT_EQ(last, (outcome{0, "", ""}));
    EXPECT_EQ(said(), (lines{"system iwpriv ra0 set SiteSurvey=1", "- usleep 4 s", "ra0 survey"}));
    EXPECT_EQ(read("/tmp/ap_list").substr(0, 31), "1   02:00:00:00:00:02 \"strong\" ");
    EXPECT_EQ(told(list)[1].find("weak|02:00:00:00:00:01|AES|WPA2-PSK|Infra|6|0|"), 0U);

    plug_in(scene(R"("survey_table": 1, )")); // the driver's order, behind what the caller had
    EXPECT_EQ(survey(), (lines{"strong", "weak", "weak", "strong"}));
}

TEST_F(mtk_survey, without_a_trigger_reads_the_table_that_the_driver_holds) {
    plug_in(scene());
    EXPECT_EQ(survey(false), lines{});
    EXPECT_EQ(said(), lines{"ra0 survey"});
    EXPECT_EQ(survey(), (lines{"strong", "weak"}));
    EXPECT_EQ(survey(false), (lines{"strong", "weak"})); // each listed already
}

TEST_F(mtk_survey, interface_that_it_raised_goes_down_again_unless_the_driver_fails) {
    plug_in(scene(R"("interfaces": {"ra0": {"state": "down"}, "wlan0": {"state": "up"}}, )"));
    EXPECT_EQ(survey(), (lines{"strong", "weak"}));
    EXPECT_EQ(said(), (lines{"system ifconfig ra0 up", "system iwpriv ra0 set SiteSurvey=1", "- usleep 4 s",
                             "ra0 survey", "system ifconfig ra0 down"}));

    plug_in(scene(R"("interfaces": {"ra0": {"state": "down"}},
        "faults": [{"call": "ioctl", "match": "survey", "errno": "EIO"}], )"));
    write("/tmp/ap_list", "an older list\n");
    list.clear();
    EXPECT_EQ(survey(), lines{});
    EXPECT_EQ(last, (outcome{0, "", "RTPRIV_IOCTL_GSITESURVEY: Input/output error\n"})); // seen from the empty list
    EXPECT_EQ(said().back(), "ra0 survey = EIO");
    EXPECT_EQ(read("/tmp/ap_list"), "");
}

TEST_F(mtk_survey, full_table_without_a_terminator_stays_inside_its_buffer) {
    plug_in(scene());
    std::string table = "Ch  SSID\n";
    while (table.size() < 8192)
        table += "6   \"" + std::to_string(table.size()) + std::string(28, 'n') + "\" 02:00:00:00:00:01   " +
                 "WPA2PSK/AES            70       11b/g/n        In\n";
    table.resize(8192);
    write("/answers/survey", table);
    EXPECT_GT(survey().size(), 60U);
    EXPECT_EQ(last.result, -1); // the last line is cut short
}

TEST_F(mtk_survey, a_scene_s_number_beyond_64_bits_is_no_small_one) {
    EXPECT_THROW(plug_in(R"({"adapter": "mediatek", "air": [{"ssid": "a", "bssid": "02:00:00:00:00:01",
        "level": 18446744073709551556}]})"),
                 std::runtime_error);
}

} // namespace
