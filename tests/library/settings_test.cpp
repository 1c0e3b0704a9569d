// SPDX-License-Identifier: MIT
// What each setting sends to a MediaTek driver.

#include "tests/support/camera_test.h"

#include <functional>

#include "libwlan/libwlan.h"
#include "tests/support/driver_hook.h"

namespace {

const scene camera = scene("mediatek").stored(stored_settings().region(5, 7));

/// An operation on an interface whose keys begin with "ApCli", unless it is the access point's.
struct setting {
    const char* name;
    std::string interface;
    std::function<int(wlan&)> operation;
    lines sent;
    int result = 0;
    int refused = -1; // the result when the driver refuses the first command
};

std::string key = "passphrase";
std::string ssid = "Net";

auto auth(int number) {
    return [=](wlan& radio) { return radio.set_auth(static_cast<auth_from_cam>(number)); };
}

auto enc(int number, char* with_key = key.data(), char* with_ssid = ssid.data()) {
    const auto cipher = static_cast<enc_from_cam>(number);
    return [=](wlan& radio) { return radio.set_enc_and_key(cipher, with_key, with_ssid, 2); };
}

auto channel(int number, int mode) {
    return [=](wlan& radio) { return radio.set_channel(number, static_cast<set_apcli_from_cam>(mode)); };
}

const setting settings[] = {
    {"auth open", "ra0", auth(0), {"AuthMode=OPEN"}},
    {"auth shared, of the AP-client", "wlan0", auth(1), {"ApCliAuthMode=WEPAUTO"}},
    {"auth WPA", "ra0", auth(2), {"AuthMode=WPAPSK"}},
    {"auth 3", "ra0", auth(3), {"AuthMode=WPAPSK"}},
    {"auth 4", "ra0", auth(4), {"AuthMode=WPAPSK"}},
    {"auth WPA2", "ra0", auth(5), {"AuthMode=WPA2PSK"}},
    {"auth 6", "ra0", auth(6), {"AuthMode=WEPAUTO"}},
    {"auth mixed", "ra0", auth(7), {"AuthMode=WPAPSKWPA2PSK"}},
    {"auth out of range", "ra0", auth(8), {}, -1},
    {"no cipher", "ra0", enc(0, nullptr, nullptr), {"EncrypType=NONE"}},
    {"WEP", "wlan0", enc(1), {"ApCliEncrypType=WEP", "ApCliDefaultKeyID=2", "ApCliKey2=passphrase"}},
    {"TKIP", "ra0", enc(2), {"EncrypType=TKIP", "SSID=Net", "WPAPSK=passphrase"}},
    {"AES, of the AP-client", "wlan0", enc(3), {"ApCliEncrypType=AES", "ApCliSsid=Net", "ApCliWPAPSK=passphrase"}},
    {"TKIP and AES",
     "ra0",
     enc(4),
     {"EncrypType=TKIPAES", "SSID=Net", "WpaMixPairCipher=WPA_TKIP_WPA2_AES", "WPAPSK=passphrase"}},
    {"cipher out of range", "ra0", enc(5), {}, -1},
    {"WEP without a key", "ra0", enc(1, nullptr), {}, -1},
    {"AES without an SSID", "ra0", enc(3, key.data(), nullptr), {}, -1},
    {"no SSID", "ra0", [](wlan& radio) { return radio.set_ssid(nullptr); }, {}, -1},
    {"no BSSID", "ra0", [](wlan& radio) { return radio.set_bssid(nullptr); }, {}, -1},
    {"no survey argument", "ra0", [](wlan& radio) { return radio.active_scan(nullptr); }, {}, -1},
    {"channel of a BSSID", "wlan0", channel(6, 1), {"Channel=6"}},
    {"channel of an SSID", "wlan0", channel(36, 0), {"ApCliAutoConnect=1"}},
    {"channel of a mode out of range", "wlan0", channel(36, 2), {"ApCliAutoConnect=1"}},
    {"channel algorithm", "ra0", [](wlan& radio) { return radio.set_channel_algorithm(2); }, {"AutoChannelSel=2"}},
    {"AP-client on", "wlan0", [](wlan& radio) { return radio.enable_apcli(true); }, {"ApCliEnable=1"}},
    {"radio off", "ra0", [](wlan& radio) { return radio.set_radio(false); }, {"RadioOn=0"}},
    {"802.1X off", "wlan0", [](wlan& radio) { return radio.dis_8021x(); }, {"IEEE8021X=0"}},
    {"survey", "wlan0", [](wlan& radio) { return radio.active_scan(text("1")); }, {"SiteSurvey=1"}},
    {"region", "ra0", [](wlan& radio) { return radio.set_region(); }, {"CountryRegion=5"}},
    {"region of 5 GHz", "apclii0", [](wlan& radio) { return radio.set_region(); }, {"CountryRegionABand=7"}},
    // A refused region does no harm: the radio decides over the access-point mode, and nothing over a station's.
    {"access point", "ra0", [](wlan& radio) { return radio.set_ap_mode(); }, {"CountryRegion=5", "RadioOn=1"}, 0, 0},
    {"station", "wlan0", [](wlan& radio) { return radio.set_infra_mode(); }, {"CountryRegion=5"}, 0, 0},
    {"device", "ra0", [](wlan& radio) { return radio.may_enable_device(nullptr); }, {}, 0, 0},
};

class mtk_settings : public camera_test {
protected:
    ~mtk_settings() override {
        driver_hook = nullptr;
        other_driver = nullptr;
    }

    static int run(const std::string& interface, const std::function<int(wlan&)>& operation) {
        wlan radio;
        EXPECT_EQ(radio.init(), 0);
        radio.set_interface(text(interface));
        radio.set_prefix(text(interface == "ra0" ? "" : "ApCli"));
        const int result = operation(radio);
        radio.release();
        return result;
    }
};

TEST_F(mtk_settings, commands_go_out_in_their_order) {
    for (const setting& setting : settings) {
        SCOPED_TRACE(setting.name);
        plug_in(camera);
        EXPECT_EQ(run(setting.interface, setting.operation), setting.result);
        lines expected;
        for (const std::string& command : setting.sent)
            expected.push_back(setting.interface + " set " + command);
        EXPECT_EQ(said(), expected);
    }
}

TEST_F(mtk_settings, refused_command_keeps_back_no_other) {
    for (const setting& setting : settings) {
        const int commands = static_cast<int>(setting.sent.size());
        for (int refused = 1; refused <= commands; ++refused) {
            SCOPED_TRACE(print("%s, command %d", setting.name, refused));
            plug_in(camera.fault("ioctl", "EIO").nth(refused));
            EXPECT_EQ(run(setting.interface, setting.operation), refused == 1 ? setting.refused : -1);
            EXPECT_EQ(said().size(), setting.sent.size());
        }
    }
}

TEST_F(mtk_settings, driver_s_own_result_is_passed_on) {
    plug_in(camera);
    driver_hook = [](unsigned long /*number*/, iwreq& /*request*/, int /*result*/) { return 3; };
    EXPECT_EQ(run("ra0", auth(0)), 3);
    EXPECT_EQ(run("ra0", enc(2)), 3);
    EXPECT_EQ(run("ra0", [](wlan& radio) { return radio.set_ap_mode(); }), 3);
}

TEST_F(mtk_settings, no_channel_is_sent_unless_associated) {
    plug_in(camera);
    EXPECT_EQ(run("ra0", [](wlan& radio) { return radio.set_current_channel(); }), 0);
    EXPECT_EQ(said(), lines{"wlan0 SIOCGIWAP"});
}

TEST_F(mtk_settings, current_channel_is_sent_when_it_is_one) {
    const struct {
        const char* name;
        char address; // of the access point, its first byte
        int channel;
        lines sent;
    } rows[] = {
        {"not associated", 0, 6, {}},
        {"channel 6", 2, 6, {"Channel=6"}},
        {"channel 0", 2, 0, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera);
        lines sent;
        other_driver = [&](unsigned long number, iwreq& request) {
            if (number == SIOCGIWAP) {
                request.u.ap_addr.sa_data[0] = row.address;
            } else if (number == SIOCGIWFREQ) {
                request.u.freq.m = row.channel;
            } else {
                sent.emplace_back(static_cast<const char*>(request.u.data.pointer), request.u.data.length);
            }
            return 0;
        };
        const auto set_current_channel = [](wlan& radio) { return radio.set_current_channel(); };
        EXPECT_EQ(watch([&] { return run("ra0", set_current_channel); }).result, 0);
        EXPECT_EQ(sent, row.sent);
    }
}

TEST_F(mtk_settings, overlong_key_is_cut_to_the_command) {
    plug_in(camera);
    const std::string long_key(300, 'k');
    run("ra0", [&](wlan& radio) { return radio.set_enc_and_key(ENC_WEP, text(long_key), nullptr, 1); });
    EXPECT_EQ(said().at(2), "ra0 set Key1=" + std::string(250, 'k') + " = EINVAL"); // 255 in all
}

} // namespace
