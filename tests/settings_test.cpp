#include "tests/camera_test.h"

#include <functional>

#include "libwlan/libwlan.h"

namespace {

/// An operation on an interface whose names begin with "ApCli", unless it is the access point's.
struct setting {
    const char* interface;
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
    {"ra0", auth(0), {"AuthMode=OPEN"}},
    {"wlan0", auth(1), {"ApCliAuthMode=WEPAUTO"}},
    {"ra0", auth(2), {"AuthMode=WPAPSK"}},
    {"ra0", auth(3), {"AuthMode=WPAPSK"}},
    {"ra0", auth(4), {"AuthMode=WPAPSK"}},
    {"ra0", auth(5), {"AuthMode=WPA2PSK"}},
    {"ra0", auth(6), {"AuthMode=WEPAUTO"}},
    {"ra0", auth(7), {"AuthMode=WPAPSKWPA2PSK"}},
    {"ra0", auth(8), {}, -1},
    {"ra0", enc(0, nullptr, nullptr), {"EncrypType=NONE"}},
    {"wlan0", enc(1), {"ApCliEncrypType=WEP", "ApCliDefaultKeyID=2", "ApCliKey2=passphrase"}},
    {"ra0", enc(2), {"EncrypType=TKIP", "SSID=Net", "WPAPSK=passphrase"}},
    {"wlan0", enc(3), {"ApCliEncrypType=AES", "ApCliSsid=Net", "ApCliWPAPSK=passphrase"}},
    {"ra0", enc(4), {"EncrypType=TKIPAES", "SSID=Net", "WpaMixPairCipher=WPA_TKIP_WPA2_AES", "WPAPSK=passphrase"}},
    {"ra0", enc(5), {}, -1},
    {"ra0", enc(1, nullptr), {}, -1},
    {"ra0", enc(3, key.data(), nullptr), {}, -1},
    {"ra0", [](wlan& radio) { return radio.set_ssid(nullptr); }, {}, -1},
    {"ra0", [](wlan& radio) { return radio.set_bssid(nullptr); }, {}, -1},
    {"ra0", [](wlan& radio) { return radio.active_scan(nullptr); }, {}, -1},
    {"wlan0", channel(6, 1), {"Channel=6"}},
    {"wlan0", channel(36, 0), {"ApCliAutoConnect=1"}},
    {"wlan0", channel(36, 2), {"ApCliAutoConnect=1"}},
    {"wlan0", [](wlan& radio) { return radio.enable_apcli(true); }, {"ApCliEnable=1"}},
    {"ra0", [](wlan& radio) { return radio.set_radio(false); }, {"RadioOn=0"}},
    {"wlan0", [](wlan& radio) { return radio.dis_8021x(); }, {"IEEE8021X=0"}},
    {"wlan0", [](wlan& radio) { return radio.active_scan(text("1")); }, {"SiteSurvey=1"}},
    {"ra0", [](wlan& radio) { return radio.set_region(); }, {"CountryRegion=5"}},
    {"apclii0", [](wlan& radio) { return radio.set_region(); }, {"CountryRegionABand=7"}},
    // The radio decides over the access-point mode, and nothing over a station's: a refused region does no harm.
    {"ra0", [](wlan& radio) { return radio.set_ap_mode(); }, {"CountryRegion=5", "RadioOn=1"}, 0, 0},
    {"wlan0", [](wlan& radio) { return radio.set_infra_mode(); }, {"CountryRegion=5"}, 0, 0},
    {"ra0", [](wlan& radio) { return radio.may_enable_device(nullptr); }, {}, 0, 0},
};

class setting_test : public camera_test {
protected:
    int run(const setting& setting, const std::string& faults = "") {
        plug_in(R"({"adapter": "mediatek", "faults": [)" + faults + R"(],
                    "files": {"/etc/camera.conf": ["[region]", "band_2g = 5", "band_5g = 7"]}})");
        wlan radio;
        radio.init();
        std::string interface = setting.interface;
        std::string prefix = interface == "ra0" ? "" : "ApCli";
        radio.set_interface(text(interface));
        radio.set_prefix(text(prefix));
        const int result = setting.operation(radio);
        radio.release();
        return result;
    }
};

TEST_F(setting_test, sends_its_commands_in_order_and_a_refused_one_does_not_keep_back_those_after_it) {
    for (const setting& setting : settings) {
        SCOPED_TRACE(&setting - settings);
        lines expected;
        for (const std::string& command : setting.sent)
            expected.push_back(std::string(setting.interface) + " set " + command);
        EXPECT_EQ(run(setting), setting.result);
        EXPECT_EQ(said(), expected);

        EXPECT_EQ(run(setting, R"({"call": "ioctl", "errno": "EIO"})"), setting.refused);
        EXPECT_EQ(said().size(), expected.size());
    }
}

TEST_F(setting_test, current_channel_is_sent_only_when_associated) {
    EXPECT_EQ(run({"ra0", [](wlan& radio) { return radio.set_current_channel(); }, {}}), 0);
    EXPECT_EQ(said(), lines{"wlan0 SIOCGIWAP"});
}

TEST_F(setting_test, overlong_key_is_cut_to_the_command_buffer) {
    std::string long_key(300, 'k');
    run({"ra0", [&](wlan& radio) { return radio.set_enc_and_key(ENC_WEP, text(long_key), nullptr, 1); }, {}});
    EXPECT_EQ(said().at(2), "ra0 set Key1=" + std::string(250, 'k') + " = EINVAL"); // 255 in all
}

} // namespace
