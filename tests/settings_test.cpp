#include "tests/camera_test.h"

#include <functional>

#include "libwlan/libwlan.h"

namespace {

struct setting {
    const char* title;
    const char* interface;
    const char* prefix;
    std::function<int(wlan&)> operation;
    lines sent;
    int result = 0;
};

std::string key = "passphrase";
std::string ssid = "Net";
std::string survey = "1";

template <typename Enum>
Enum value(int number) {
    return static_cast<Enum>(number);
}

auto auth(int number) {
    return [=](wlan& radio) { return radio.set_auth(value<auth_from_cam>(number)); };
}

auto enc(int number, char* with_key = key.data(), char* with_ssid = ssid.data()) {
    return [=](wlan& radio) { return radio.set_enc_and_key(value<enc_from_cam>(number), with_key, with_ssid, 2); };
}

auto channel(int number, int mode) {
    return [=](wlan& radio) { return radio.set_channel(number, value<set_apcli_from_cam>(mode)); };
}

const setting settings[] = {
    {"auth 0", "ra0", "", auth(0), {"AuthMode=OPEN"}},
    {"auth 1", "wlan0", "ApCli", auth(1), {"ApCliAuthMode=WEPAUTO"}},
    {"auth 2", "ra0", "", auth(2), {"AuthMode=WPAPSK"}},
    {"auth 3 folds to WPA", "ra0", "", auth(3), {"AuthMode=WPAPSK"}},
    {"auth 4 folds to WPA", "ra0", "", auth(4), {"AuthMode=WPAPSK"}},
    {"auth 5", "ra0", "", auth(5), {"AuthMode=WPA2PSK"}},
    {"auth 6 folds to WEP", "ra0", "", auth(6), {"AuthMode=WEPAUTO"}},
    {"auth 7", "ra0", "", auth(7), {"AuthMode=WPAPSKWPA2PSK"}},
    {"auth 8", "ra0", "", auth(8), {}, -1},
    {"auth 255", "ra0", "", auth(255), {}, -1},
    {"no cipher needs no texts", "ra0", "", enc(0, nullptr, nullptr), {"EncrypType=NONE"}},
    {"WEP", "wlan0", "ApCli", enc(1), {"ApCliEncrypType=WEP", "ApCliDefaultKeyID=2", "ApCliKey2=passphrase"}},
    {"TKIP", "ra0", "", enc(2), {"EncrypType=TKIP", "SSID=Net", "WPAPSK=passphrase"}},
    {"AES", "wlan0", "ApCli", enc(3), {"ApCliEncrypType=AES", "ApCliSsid=Net", "ApCliWPAPSK=passphrase"}},
    {"both",
     "wlan0",
     "ApCli",
     enc(4),
     {"ApCliEncrypType=TKIPAES", "ApCliSsid=Net", "WpaMixPairCipher=WPA_TKIP_WPA2_AES", "ApCliWPAPSK=passphrase"}},
    {"enc 5", "ra0", "", enc(5), {}, -1},
    {"WEP without a key", "ra0", "", enc(1, nullptr), {}, -1},
    {"AES without an SSID", "ra0", "", enc(3, key.data(), nullptr), {}, -1},
    {"no SSID", "ra0", "", [](wlan& radio) { return radio.set_ssid(nullptr); }, {}, -1},
    {"no BSSID", "ra0", "", [](wlan& radio) { return radio.set_bssid(nullptr); }, {}, -1},
    {"no survey argument", "ra0", "", [](wlan& radio) { return radio.active_scan(nullptr); }, {}, -1},
    {"fixed channel", "wlan0", "ApCli", channel(6, 1), {"Channel=6"}},
    {"mode 0 sends no channel", "wlan0", "ApCli", channel(36, 0), {"ApCliAutoConnect=1"}},
    {"mode 2 is like 0", "wlan0", "ApCli", channel(36, 2), {"ApCliAutoConnect=1"}},
    {"apcli on", "wlan0", "ApCli", [](wlan& radio) { return radio.enable_apcli(true); }, {"ApCliEnable=1"}},
    {"radio off", "ra0", "", [](wlan& radio) { return radio.set_radio(false); }, {"RadioOn=0"}},
    {"802.1X off", "wlan0", "ApCli", [](wlan& radio) { return radio.dis_8021x(); }, {"IEEE8021X=0"}},
    {"survey", "ra0", "ApCli", [](wlan& radio) { return radio.active_scan(survey.data()); }, {"SiteSurvey=1"}},
    {"region", "ra0", "", [](wlan& radio) { return radio.set_region(); }, {"CountryRegion=5"}},
    {"5 GHz region", "apclii0", "ApCli", [](wlan& radio) { return radio.set_region(); }, {"CountryRegionABand=7"}},
    {"AP mode", "ra0", "", [](wlan& radio) { return radio.set_ap_mode(); }, {"CountryRegion=5", "RadioOn=1"}},
    {"nothing to enable", "ra0", "", [](wlan& radio) { return radio.may_enable_device(nullptr); }, {}},
};

class setting_test : public camera_test {
protected:
    lines run(const setting& setting, const std::string& faults, int& result) {
        plug_in(R"({"adapter": "mediatek", "faults": [)" + faults + R"(],
                    "files": {"/etc/camera.conf": ["[region]", "band_2g = 5", "band_5g = 7"]}})");
        wlan radio;
        radio.init();
        std::string interface = setting.interface;
        std::string prefix = setting.prefix;
        radio.set_interface(interface.data());
        radio.set_prefix(prefix.data());
        result = setting.operation(radio);
        radio.release();
        return said();
    }
};

TEST_F(setting_test, sends_its_commands_in_order) {
    for (const setting& setting : settings) {
        SCOPED_TRACE(setting.title);
        lines expected;
        for (const std::string& command : setting.sent)
            expected.push_back(std::string(setting.interface) + " set " + command);
        int result = 0;
        EXPECT_EQ(run(setting, "", result), expected);
        EXPECT_EQ(result, setting.result);
    }
}

TEST_F(setting_test, a_refused_command_does_not_keep_back_those_after_it) {
    for (const setting& setting : settings) {
        SCOPED_TRACE(setting.title);
        int result = 0;
        const lines sent = run(setting, R"({"call": "ioctl", "errno": "EIO"})", result);
        ASSERT_EQ(sent.size(), setting.sent.size());
        // The radio alone decides over the access-point mode: a refused region does no harm.
        const bool harmless = sent.empty() || std::string(setting.title) == "AP mode";
        EXPECT_EQ(result, harmless ? setting.result : -1);
    }
}

TEST_F(setting_test, station_mode_goes_on_without_its_region) {
    const setting station = {"", "wlan0", "ApCli", [](wlan& radio) { return radio.set_infra_mode(); }, {}};
    int result = -1;
    EXPECT_EQ(run(station, R"({"call": "ioctl", "errno": "EIO"})", result), lines{"wlan0 set CountryRegion=5 = EIO"});
    EXPECT_EQ(result, 0);
}

TEST_F(setting_test, current_channel_is_sent_only_when_associated) {
    const setting current = {"", "ra0", "ApCli", [](wlan& radio) { return radio.set_current_channel(); }, {}};
    int result = -1;
    EXPECT_EQ(run(current, "", result), lines{"wlan0 SIOCGIWAP"});
    EXPECT_EQ(result, 0);
}

TEST_F(setting_test, overlong_key_is_cut_to_the_command_buffer) {
    std::string long_key(300, 'k');
    const setting cut = {
        "", "ra0", "", [&](wlan& radio) { return radio.set_enc_and_key(ENC_WEP, long_key.data(), nullptr, 1); }, {}};
    int result = 0;
    EXPECT_EQ(run(cut, "", result).at(2), "ra0 set Key1=" + std::string(250, 'k') + " = EINVAL"); // 255 in all
}

} // namespace
