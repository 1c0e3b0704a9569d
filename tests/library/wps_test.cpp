// SPDX-License-Identifier: MIT
// Push-button sessions on a MediaTek adapter.

#include "tests/support/camera_test.h"

#include <cstring>

#include "libwlan/libwlan.h"
#include "tests/support/driver_hook.h"

namespace {

const stored_settings old_network = stored_settings().client("Old", "open", "none", "old-key-1").region(5);
const scene camera = scene("mediatek").stored(old_network);

class wps : public camera_test {
protected:
    ~wps() override {
        driver_hook = nullptr;
        other_driver = nullptr;
    }

    void start_on(const scene& plugged) {
        plug_in(plugged);
        ASSERT_EQ(radio.init(), 0);
        radio.set_interface(text("ra0")); // as an earlier operation left it
    }

    /// Stores the network of a profile that the driver gives.
    outcome commit(const std::string& profile) {
        write("/answers/profile", profile);
        return watch([&] { return radio.update_wsc_to_db_and_action(text("wlan0")); });
    }

    wlan radio;
};

// The session
// --------------------------------------------------------------------------------------------------------------------

const lines session = {"system ifconfig wlan0 down", "system ifconfig wlan0 up", "wlan0 set CountryRegion=5",
                       "wlan0 set ApCliEnable=0",    "wlan0 set WscConfMode=1",  "wlan0 set WscMode=2",
                       "wlan0 set ApCliEnable=1",    "wlan0 set WscGetConf=1"};

TEST_F(wps, cycles_the_client_and_starts_last) {
    plug_in(camera);
    EXPECT_EQ(radio.init_wps(), 0);
    EXPECT_EQ(said(), lines{"system ifconfig wlan0 down"});
    EXPECT_EQ(radio.do_wps(0), 0);
    EXPECT_EQ(said(session.size()), session);
    EXPECT_EQ(radio.release_wps(), 0);
    EXPECT_EQ(radio.sock, -1);
}

TEST_F(wps, stops_also_with_nothing_to_stop) {
    start_on(camera);
    EXPECT_EQ(radio.stop_wps(0), 0);
    EXPECT_EQ(said(), lines{"wlan0 set WscStop=1"});
}

TEST_F(wps, there_is_one_ap_client_only) {
    start_on(camera);
    for (const int index : {-1, 1}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(radio.do_wps(index), -1);
        EXPECT_EQ(radio.stop_wps(index), -1);
        EXPECT_EQ(radio.does_it_finish(index), 0);
    }
    EXPECT_EQ(said(), lines{});
}

TEST_F(wps, refused_region_starts_no_session) {
    start_on(camera.fault("ioctl", "EIO").match("CountryRegion"));
    EXPECT_EQ(watch([&] { return radio.do_wps(0); }), (outcome{-1, "", "set region failed\n", 1}));
    EXPECT_EQ(said(), (lines{session[0], session[1], session[2] + " = EIO"}));
}

TEST_F(wps, each_refused_key_fails_but_all_are_sent) {
    for (int refused = 1; refused <= 5; ++refused) {
        SCOPED_TRACE(session[static_cast<std::size_t>(2 + refused)]);
        start_on(camera);
        radio.set_interface(text("wlan0"));
        radio.set_prefix(text("ApCli"));
        int sent = 0;
        driver_hook = [&](unsigned long /*number*/, iwreq& /*request*/, int result) {
            return ++sent == refused ? -1 : result;
        };
        EXPECT_EQ(radio.set_wsc(), -1);
        EXPECT_EQ(said(), (lines{session.begin() + 3, session.end()}));
    }
}

TEST_F(wps, refused_session_is_told) {
    start_on(camera.fault("ioctl", "EIO").match("WscMode"));
    const outcome run = watch([&] { return radio.do_wps(0); });
    EXPECT_EQ(run.result, -1);
    EXPECT_EQ(run.err, "set wsc failed\n");
    EXPECT_EQ(said().size(), session.size());
    EXPECT_EQ(said().back(), session.back() + " = EINVAL"); // the driver misses its mode
}

// Its status
// --------------------------------------------------------------------------------------------------------------------

/// The names of the codes from 0 and from 257 on, all of which begin with "STATUS_WSC_".
const std::vector<const char*> session_names = {
    // clang-format off
    "NOTUSED", "IDLE", "FAIL", "LINK_UP", "EAPOL_START_RECEIVED", "EAP_REQ_ID_SENT", "EAP_RSP_ID_RECEIVED",
    "EAP_RSP_WRONG_SMI", "EAP_RSP_WRONG_VENDOR_TYPE", "EAP_REQ_WSC_START", "EAP_M1_SENT", "EAP_M1_RECEIVED",
    "EAP_M2_SENT", "EAP_M2_RECEIVED", "EAP_M2D_RECEIVED", "EAP_M3_SENT", "EAP_M3_RECEIVED", "EAP_M4_SENT",
    "EAP_M4_RECEIVED", "EAP_M5_SENT", "EAP_M5_RECEIVED", "EAP_M6_SENT", "EAP_M6_RECEIVED", "EAP_M7_SENT",
    "EAP_M7_RECEIVED", "EAP_M8_SENT", "EAP_M8_RECEIVED", "EAP_RAP_RSP_ACK", "EAP_RAP_REQ_DONE_SENT",
    "EAP_RAP_RSP_DONE_SENT", "EAP_FAIL_SENT", "ERROR_HASH_FAIL", "ERROR_HMAC_FAIL", "ERROR_DEV_PWD_AUTH_FAIL",
    "CONFIGURED", "SCAN_AP", "EAPOL_START_SENT", "EAP_RSP_DONE_SENT", "WAIT_PIN_CODE", "START_ASSOC",
    "IBSS_WAIT_NEXT_SMPBC_ENROLLEE", "IBSS_NEW_RANDOM_PIN", "IBSS_FIXED_PIN"};
const std::vector<const char*> end_names = {
    "PBC_TOO_MANY_AP", "PBC_NO_AP", "EAP_FAIL_RECEIVED", "EAP_NONCE_MISMATCH", "EAP_INVALID_DATA",
    "PASSWORD_MISMATCH", "EAP_REQ_WRONG_SMI", "EAP_REQ_WRONG_VENDOR_TYPE", "PBC_SESSION_OVERLAP",
    "SMPBC_TOO_MANY_REGISTRAR", "EMPTY_IPV4_SUBMASK_LIST", "SMPBC_NO_AP", "PIN_NO_AP"};
// clang-format on

class wps_status : public wps {
protected:
    /// Asks for the status while the driver has this one.
    outcome look(int code) {
        driver_hook = [=](unsigned long /*number*/, iwreq& request, int result) {
            std::memcpy(request.u.data.pointer, &code, sizeof code);
            return result;
        };
        return watch([&] { return radio.does_it_finish(0); });
    }
};

TEST_F(wps_status, has_its_name) {
    start_on(camera);
    for (int code = 0; code < 43; ++code) {
        const std::string name = session_names.at(static_cast<std::size_t>(code));
        EXPECT_EQ(look(code), (outcome{code == 34 ? 1 : 0, "wlan0: WSC status:[STATUS_WSC_" + name + "]\n", ""}));
    }
    for (int code = 257; code < 270; ++code) {
        const std::string name = end_names.at(static_cast<std::size_t>(code - 257));
        EXPECT_EQ(look(code), (outcome{0, "wlan0: WSC status:[STATUS_WSC_" + name + "]\n", ""}));
    }
}

TEST_F(wps_status, without_a_name_is_a_number) {
    start_on(camera);
    for (const int code : {-1, 43, 255, 256, 270})
        EXPECT_EQ(look(code), (outcome{0, "wlan0: WSC status:[" + std::to_string(code) + "]\n", ""}));
}

TEST_F(wps_status, that_the_driver_leaves_out_is_1_below_0) {
    start_on(camera);
    other_driver = [](unsigned long /*number*/, iwreq& /*request*/) { return 0; }; // it writes no status
    EXPECT_EQ(watch([&] { return radio.does_it_finish(0); }), (outcome{0, "wlan0: WSC status:[-1]\n", ""}));
}

TEST_F(wps_status, that_cannot_be_had_is_told) {
    start_on(camera.fault("ioctl", "EIO"));
    EXPECT_EQ(watch([&] { return radio.does_it_finish(0); }), (outcome{0, "", "wlan0: Input/output error\n"}));
    EXPECT_EQ(said(), lines{"wlan0 query 0x0751 = EIO"});
}

// The network obtained
// --------------------------------------------------------------------------------------------------------------------

TEST_F(wps, stores_what_the_profile_says) {
    const struct {
        const char* name;
        std::string profile;
        int auth, enc;
        const char* key;
    } rows[] = {
        {"open, which keeps the stored key", "AuthMode = OPEN\nEncrypType = NONE\nKeyIndex = 1\n", 0, 0, "old-key-1"},
        {"shared WEP", "AuthMode = SHARED\nEncrypType = WEP\nKeyIndex = 1\nKey = abcde\n", 1, 1, "abcde"},
        {"sign in the key", "AuthMode = WPAPSK\nEncrypType = TKIP\nKeyIndex = 1\nKey = a = b\n", 2, 2, "a = b"},
        {"empty lines", "\nAuthMode = WPA\nEncrypType = AES\nKeyIndex = 1\n\nKey = new-key", 2, 3, "new-key"},
        {"a line more", "AuthMode = WPA2\nEncrypType = AES\nKeyIndex = 1\nKey = new-key\nMore", 3, 3, "new-key"},
        {"open with an empty key", "AuthMode = OPEN\nEncrypType = NONE\nKeyIndex = 1\nKey = ", 0, 0, ""},
        {"WPA2 personal", "AuthMode = WPA2PSK\nEncrypType = AES\nKeyIndex = 1\nKey = new-key", 5, 3, "new-key"},
    };
    for (const auto& row : rows) {
        const std::string profile = "SSID = home\n" + row.profile;
        const std::string up_to_the_end(4096 - profile.size(), ' ');
        for (const std::string& before : {std::string("WSC profile\n"), up_to_the_end}) {
            SCOPED_TRACE(print("%s, behind %zu bytes", row.name, before.size()));
            start_on(camera);
            EXPECT_EQ(commit(before + profile), (outcome{0, "", ""}));
            _wireless_setting stored{};
            ASSERT_EQ(cam_get_client(&stored), 0);
            EXPECT_EQ(stored.client_enabled, 1);
            EXPECT_STREQ(stored.client_ssid, "home");
            EXPECT_STREQ(stored.client_key, row.key);
            EXPECT_EQ(stored.client_auth, row.auth);
            EXPECT_EQ(stored.client_enc, row.enc);
        }
    }
}

TEST_F(wps, stores_nothing_of_a_bad_profile) {
    const std::string open = "SSID = a\nAuthMode = OPEN\n";
    const struct {
        const char* name;
        std::string profile;
        std::string err;
        int result = -22;
    } rows[] = {
        {"empty", "", ""},
        {"three lines", open + "EncrypType = NONE\n", ""},
        {"line without a sign", open + "EncrypType NONE\nKeyIndex = 1\n", ""},
        {"value cut after its sign", open + "EncrypType = NONE\nKeyIndex =", ""},
        {"key without a sign", open + "EncrypType = NONE\nKeyIndex = 1\nKey", ""},
        {"unknown cipher", open + "EncrypType = TKIPAES\nKeyIndex = 1\n", "parse enc fail TKIPAES\n"},
        {"unknown auth", "SSID = a\nAuthMode = WPA3\nEncrypType = AES\nKeyIndex = 10\n", "parse auth fail 10 WPA3\n"},
        {"name too long for the store", "SSID = " + std::string(40, 's') + "\nA = OPEN\nE = NONE\nK = 1\n",
         folder + "/etc/camera.conf (not written):2: client.ssid: is longer than 32 bytes\nset client failed\n", -13},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        start_on(camera);
        const std::string before = read("/etc/camera.conf");
        EXPECT_EQ(commit(row.profile), (outcome{row.result, "", row.err}));
        EXPECT_EQ(read("/etc/camera.conf"), before);
    }
}

const std::string good_profile = "SSID = a\nAuthMode = OPEN\nEncrypType = NONE\nKeyIndex = 1\n";

TEST_F(wps, refused_profile_is_told) {
    for (const int answer : {-1, 1}) { // anything but 0 is a refusal
        SCOPED_TRACE(answer);
        start_on(camera);
        driver_hook = [=](unsigned long /*number*/, iwreq& /*request*/, int /*result*/) { return answer; };
        EXPECT_EQ(commit(good_profile), (outcome{-22, "", "ioctl failed: update_wsc_to_db_and_action\n"}));
    }
}

TEST_F(wps, unreadable_store_takes_no_network) {
    start_on(scene("mediatek").stored(stored_settings()));
    EXPECT_EQ(commit(good_profile),
              (outcome{-13, "", folder + "/etc/camera.conf: client.ssid: is missing\nget client set failed\n"}));
}

TEST_F(wps, channel_is_what_iwgetid_tells) {
    start_on(camera.air(access_point("Net").channel(6)));
    EXPECT_EQ(radio.get_client_channel(text("wlan0")), 0); // not associated: the tool prints nothing
    ASSERT_EQ(watch([] {
                  return do_infra_mode_mtk(text("Net"), text("02:00:00:00:00:01"), AUTH_OPEN, ENC_NONE, nullptr, 6, 1);
              }).result,
              0);
    EXPECT_EQ(radio.get_client_channel(text("wlan0")), 6);
    EXPECT_EQ(radio.get_client_channel(nullptr), 0);
    EXPECT_EQ(said().back(), "popen iwgetid --raw --channel ra0 = 255");
}

TEST_F(wps, channel_without_the_tool_is_122_below_0) {
    start_on(camera.fault("popen", "EMFILE"));
    EXPECT_EQ(radio.get_client_channel(text("wlan0")), -122);
}

TEST_F(wps, cable_decides_what_the_network_needs) {
    const struct {
        const char* name;
        scene camera;
        const char* does;
    } rows[] = {
        {"cable", camera.wired(), "system ifconfig wlan0 down"},
        {"no cable", camera, "system /etc/rc.d/init.d/network.sh reload &"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        start_on(row.camera);
        EXPECT_EQ(watch([&] { return radio.does_network_need_to_act(); }).result, 0);
        EXPECT_EQ(said().back(), row.does);
    }
}

} // namespace
