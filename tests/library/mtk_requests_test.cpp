// SPDX-License-Identifier: MIT
// The exact form of what the library asks of a MediaTek driver, and what it makes of an answer to a survey.

#include "tests/support/camera_test.h"

#include <map>

#include "libwlan/libwlan.h"
#include "tests/support/driver_hook.h"
#include "vcamera/scene/camera.h"

namespace {

const scene camera = scene("mediatek")
                         .air(access_point("Net").channel(6).wpa2("passphrase").pressed_button())
                         .stored(stored_settings().client("Net", "wpa2psk", "aes", "passphrase"));

class mtk_requests : public camera_test {
protected:
    ~mtk_requests() override { driver_hook = nullptr; }
};

int survey() {
    std::vector<sites> list;
    return run_site_survey(list);
}

int ask_figures() {
    WIFI_INFO info{};
    return get_wifi_info(info);
}

int obtain_network() {
    wlan radio;
    EXPECT_EQ(radio.init(), 0);
    EXPECT_EQ(radio.do_wps(0), 0);
    for (int look = 0; look < 20 && radio.does_it_finish(0) == 0; ++look) {
    }
    const int result = radio.update_wsc_to_db_and_action(text("wlan0"));
    radio.release();
    return result;
}

TEST_F(mtk_requests, give_the_length_of_what_they_carry) {
    const struct {
        const char* name;
        int (*request)();
        std::map<std::string, std::string> lengths; // of each request that it makes; commands have their own
    } rows[] = {
        {"station", run_infra_mode_base_db, {{"set", ""}}},
        {"survey", survey, {{"survey", "8192"}}},
        {"radio figures",
         ask_figures,
         {{"query 0x0678", "4"},
          {"query 0x0679", "4"},
          {"query 0x0108", "4"},
          {"query 0x0109", "4"},
          {"query 0x0630", "4"}}},
        {"push button", obtain_network, {{"set", ""}, {"query 0x0751", "4"}, {"profile", "4096"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera);
        EXPECT_EQ(watch(row.request).result, 0);
        std::map<std::string, std::string> lengths;
        for (const vcamera::line& line : vcamera::journal(folder)) {
            if (line.length == "-")
                continue;
            const bool without_nul = line.request == "set" && line.length == std::to_string(line.text.size());
            lengths[line.request] = without_nul ? "" : line.length;
        }
        EXPECT_EQ(lengths, row.lengths);
    }
}

TEST_F(mtk_requests, wep_key_has_its_number) {
    const struct {
        const char* name;
        int (*request)();
        lines keys;
    } rows[] = {
        {"access point",
         [] { return run_ap_mode(text("Camera"), AUTH_SHARED, ENC_WEP, text("abcde")); },
         {"ra0 set DefaultKeyID=1", "ra0 set Key1=abcde"}},
        {"station",
         [] {
             return run_infra_mode(text("Net"), text("02:00:00:00:00:01"), AUTH_SHARED, ENC_WEP, text("abcde"), 6, 3);
         },
         {"wlan0 set ApCliDefaultKeyID=3", "wlan0 set ApCliKey3=abcde"}},
        {"repeater",
         [] {
             return run_repeater_mode(text("Camera"), AUTH_OPEN, ENC_NONE, nullptr, text("Net"),
                                      text("02:00:00:00:00:01"), AUTH_SHARED, ENC_WEP, text("abcde"), 6);
         },
         {"wlan0 set ApCliDefaultKeyID=1", "wlan0 set ApCliKey1=abcde"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera);
        EXPECT_EQ(watch(row.request).result, 0);
        lines keys;
        for (const std::string& line : said()) {
            if (line.find("Key") != std::string::npos)
                keys.push_back(line);
        }
        EXPECT_EQ(keys, row.keys);
    }
}

TEST_F(mtk_requests, survey_answered_above_0_is_read) {
    plug_in(camera);
    std::vector<sites> list;
    driver_hook = [](unsigned long /*number*/, iwreq& /*request*/, int /*result*/) { return 1; };
    EXPECT_EQ(watch([&] { return run_site_survey(list); }), (outcome{0, "", ""}));
    EXPECT_EQ(names(list), lines{"Net"});
}

TEST_F(mtk_requests, rejected_survey_line_keeps_the_socket) {
    plug_in(camera.key("answers", {{"survey", {"Ch  SSID", "6   no quotes"}}}));
    const outcome run = watch(survey);
    EXPECT_EQ(run.result, -1);
    EXPECT_EQ(run.opened, 1);
}

} // namespace
