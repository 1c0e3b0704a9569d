// SPDX-License-Identifier: MIT
// How a MediaTek adapter is asked for what is in the air, and what becomes of its table.

#include "tests/support/camera_test.h"

#include "libwlan/libwlan.h"

namespace {

const scene camera = scene("mediatek")
                         .air(access_point("weak").channel(6).wpa2().level(-80))
                         .air(access_point("strong").channel(1).level(-40));

class mtk_survey : public camera_test {
protected:
    outcome survey() {
        return watch([&] { return run_site_survey(list); });
    }

    /// Reads the table that the driver holds, without a scan.
    int read_table() {
        wlan radio;
        EXPECT_EQ(radio.init(), 0);
        const int result = radio.do_site_survey(list, false);
        radio.release();
        return result;
    }

    std::vector<sites> list;
};

TEST_F(mtk_survey, triggers_waits_fetches_and_lists) {
    plug_in(camera);
    EXPECT_EQ(survey(), (outcome{0, "", ""}));
    EXPECT_EQ(said(), (lines{"system iwpriv ra0 set SiteSurvey=1", "- usleep 4 s", "ra0 survey"}));
    EXPECT_EQ(told(list), (lines{"strong|02:00:00:00:00:02|NONE|OPEN|Infra|1|0|100",
                                 "weak|02:00:00:00:00:01|AES|WPA2-PSK|Infra|6|0|40"}));
    EXPECT_EQ(read("/tmp/ap_list"), "1   02:00:00:00:00:02 \"strong\"                        \n"
                                    "6   02:00:00:00:00:01 \"weak\"                          \n");
}

TEST_F(mtk_survey, version_1_table_is_added_in_its_order) {
    plug_in(camera);
    survey();
    plug_in(camera.key("survey_table", 1));
    survey();
    EXPECT_EQ(names(list), (lines{"strong", "weak", "weak", "strong"}));
}

TEST_F(mtk_survey, without_a_trigger_only_reads_the_table) {
    plug_in(camera);
    EXPECT_EQ(read_table(), 0);
    EXPECT_EQ(said(), lines{"ra0 survey"});
    EXPECT_EQ(names(list), lines{}); // there was no scan yet

    survey();
    list.clear();
    EXPECT_EQ(read_table(), 0);
    EXPECT_EQ(names(list), (lines{"strong", "weak"}));
}

TEST_F(mtk_survey, what_is_listed_already_comes_but_once) {
    plug_in(camera);
    survey();
    EXPECT_EQ(read_table(), -1); // each line was refused
    EXPECT_EQ(names(list), (lines{"strong", "weak"}));
}

TEST_F(mtk_survey, interface_that_it_raised_goes_down_again) {
    plug_in(camera.interface_down("ra0"));
    EXPECT_EQ(survey(), (outcome{0, "", ""}));
    EXPECT_EQ(said(), (lines{"system ifconfig ra0 up", "system iwpriv ra0 set SiteSurvey=1", "- usleep 4 s",
                             "ra0 survey", "system ifconfig ra0 down"}));
}

TEST_F(mtk_survey, failed_fetch_is_seen_from_the_empty_list) {
    plug_in(camera.interface_down("ra0").fault("ioctl", "EIO").match("survey"));
    write("/tmp/ap_list", "an older list\n");
    EXPECT_EQ(survey(), (outcome{0, "", "RTPRIV_IOCTL_GSITESURVEY: Input/output error\n"}));
    EXPECT_EQ(names(list), lines{});
    EXPECT_EQ(read("/tmp/ap_list"), "");
    EXPECT_EQ(said().back(), "ra0 survey = EIO"); // which leaves the interface up
}

TEST_F(mtk_survey, full_table_is_read_to_its_last_byte) {
    plug_in(camera);
    std::string table = "Ch  SSID\n";
    while (table.size() < 8192) {
        table += "6   \"" + std::to_string(table.size()) + std::string(28, 'n') + "\" 02:00:00:00:00:01   " +
                 "WPA2PSK/AES            70       11b/g/n        In\n";
    }
    table.resize(8192); // without a terminator
    write("/answers/survey", table);
    EXPECT_EQ(survey().result, -1); // the last line is cut short
    EXPECT_GT(list.size(), 60U);
}

TEST_F(mtk_survey, scene_s_huge_number_is_no_small_one) {
    const scene huge = scene("mediatek").air(access_point("a").key("level", 18446744073709551556U));
    EXPECT_THROW(plug_in(huge), std::runtime_error);
}

} // namespace
