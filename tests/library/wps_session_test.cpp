// SPDX-License-Identifier: MIT
// Whole push-button sessions, from the button to the stored network, and what other interfaces know of them.

#include "tests/support/camera_test.h"
#include "tests/support/mtk_driver.h"

#include "libwlan/libwlan.h"

namespace {

const access_point home = access_point("Home").channel(6).pressed_button();
const access_point secured = home.key("key", "home-key-1");
const access_point wpa2 = secured.key("security", "wpa2");
const access_point mixed = secured.key("security", "mixed");

scene camera(const access_point& router) {
    return scene("mediatek").air(router).stored(stored_settings().client("Old", "open", "none", "old-key-1"));
}

class wps_session : public camera_test {
protected:
    /// Goes on to the end of the session.
    void obtain() {
        watch([&] {
            EXPECT_EQ(radio.init(), 0);
            EXPECT_EQ(radio.do_wps(0), 0);
            for (int look = 0; look < 20 && radio.does_it_finish(0) == 0; ++look) {
            }
            return 0;
        });
    }
    wlan radio;
};

TEST_F(wps_session, stores_what_the_router_hands_over) {
    const struct {
        const char* name;
        access_point router;
        std::vector<std::string> forms;
        outcome committed;
        std::string stored; // SSID, auth, enc, key
    } rows[] = {
        {"WPA2", wpa2, {}, {0, "", ""}, "Home 5 3 home-key-1"},
        {"blank lines", wpa2, {"blank-lines"}, {0, "", ""}, "Home 5 3 home-key-1"},
        {"lines behind", wpa2, {"trailer"}, {0, "", ""}, "Home 5 3 home-key-1"},
        {"both", wpa2, {"trailer", "blank-lines"}, {0, "", ""}, "Home 5 3 home-key-1"},
        {"WPA", secured.key("security", "wpa"), {}, {0, "", ""}, "Home 2 2 home-key-1"},
        {"WEP", home.key("security", "wep").key("key", "abcde"), {}, {0, "", ""}, "Home 1 1 abcde"},
        {"open", home, {}, {0, "", ""}, "Home 0 0 old-key-1"},
        {"open, lines behind: the fifth is the key's", home, {"trailer"}, {0, "", ""}, "Home 0 0 1"},
        {"mixed, of which the strongest is told", mixed, {}, {0, "", ""}, "Home 5 3 home-key-1"},
        {"mixed, all told", mixed, {"mixed"}, {-22, "", "parse auth fail 1 WPAPSKWPA2PSK\n"}, "Old 0 0 old-key-1"},
        {"both ciphers told",
         wpa2.key("cipher", "tkipaes"),
         {"mixed"},
         {-22, "", "parse enc fail TKIPAES\n"},
         "Old 0 0 old-key-1"},
        {"nothing is mixed", wpa2, {"mixed"}, {0, "", ""}, "Home 5 3 home-key-1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera(row.router).key("wps_profile", row.forms));
        obtain();
        EXPECT_EQ(watch([&] { return radio.update_wsc_to_db_and_action(text("wlan0")); }), row.committed);
        _wireless_setting stored{};
        EXPECT_EQ(cam_get_client(&stored), 0);
        EXPECT_EQ(print("%s %d %d %s", stored.client_ssid, stored.client_auth, stored.client_enc, stored.client_key),
                  row.stored);
        EXPECT_EQ(stored.client_channel, row.committed.result == 0 ? 6 : 0);
    }
}

TEST_F(wps_session, belongs_to_the_interface_it_runs_on) {
    plug_in(camera(wpa2));
    obtain();
    const mtk_driver driver;
    const std::string no_profile = "errno " + std::to_string(EINVAL);
    for (const char* other : {"ra0", "apclii0"}) {
        EXPECT_EQ(driver.wps_status(other), 0) << other; // not used
        EXPECT_EQ(driver.text(other, 9), no_profile) << other;
        EXPECT_EQ(driver.set(other, "WscStop=1"), 0); // of none
    }
    EXPECT_EQ(driver.wps_status("wlan0"), 34);
    EXPECT_EQ(driver.text("wlan0", 9),
              "WSC profile\nSSID = Home\nAuthMode = WPA2PSK\nEncrypType = AES\nKeyIndex = 1\nKey = home-key-1\n");
    EXPECT_EQ(driver.set("wlan0", "WscStop=1"), 0);
    EXPECT_EQ(driver.text("wlan0", 9), no_profile);
}

TEST_F(wps_session, starts_with_its_own_interface_s_settings) {
    const struct {
        const char* name;
        const char* told; // the mode and the way
        int error;
    } rows[] = {
        {"all on the AP-client", "wlan0", 0},
        {"on the access point", "ra0", EINVAL},
        {"on the other AP-client", "apclii0", EINVAL},
    };
    for (const auto& row : rows) {
        plug_in(camera(wpa2));
        const mtk_driver driver;
        EXPECT_EQ(driver.set("wlan0", "ApCliEnable=1"), 0);
        EXPECT_EQ(driver.set(row.told, "WscConfMode=1"), 0);
        EXPECT_EQ(driver.set(row.told, "WscMode=2"), 0);
        EXPECT_EQ(driver.set("wlan0", "WscGetConf=1"), row.error) << row.name;
    }
}

TEST_F(wps_session, commit_asks_ra0_unless_told_otherwise) {
    plug_in(camera(wpa2));
    obtain();
    EXPECT_EQ(watch([&] { return radio.update_wsc_to_db_and_action(nullptr); }),
              (outcome{-22, "", "ioctl failed: update_wsc_to_db_and_action\n"}));
    EXPECT_EQ(said().back(), "ra0 profile = EINVAL");
}

} // namespace
