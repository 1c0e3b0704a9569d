#include "tests/camera_test.h"

#include <tuple>

#include "libwlan/libwlan.h"

namespace {

/// A scene whose driver refuses the nth command.
std::string refusing(int nth) {
    return R"({"adapter": "mediatek", "files": {"/etc/camera.conf": ["[region]", "band_2g = 5", "band_5g = 7"]},
        "faults": [{"call": "ioctl", "errno": "EIO", "nth": )" +
           std::to_string(nth) + "}]}";
}
const std::string willing = refusing(1000);

std::string ssid = "Net";
std::string bssid = "02:00:00:00:00:01";
std::string key = "passphrase";

const lines access_point = {
    "ra0 set CountryRegion=5", "ra0 set RadioOn=1",         "ra0 set AuthMode=WPA2PSK", "ra0 set EncrypType=AES",
    "ra0 set SSID=Net",        "ra0 set WPAPSK=passphrase", "ra0 set SSID=Net",
};

/// What a station set-up sends on one interface.
lines station(const std::string& interface, const std::string& joins, const std::string& ends_with) {
    const std::string region = interface == "wlan0" ? "CountryRegion=5" : "CountryRegionABand=7";
    lines commands = {"ApCliEnable=0",           region,          "ApCliAuthMode=WPA2PSK",
                      "ApCliEncrypType=TKIPAES", "ApCliSsid=Net", "WpaMixPairCipher=WPA_TKIP_WPA2_AES",
                      "ApCliWPAPSK=passphrase",  "ApCliSsid=Net", "ApCliBssid=" + joins,
                      "ApCliEnable=1",           ends_with};
    for (std::string& command : commands)
        command.insert(0, interface + " set ");
    return commands;
}

class mtk_modes : public camera_test {
protected:
    outcome run_ap(auth_from_cam auth = AUTH_WPA2PSK) {
        return watch([&] { return do_ap_mode_mtk(text(ssid), auth, ENC_AES, text(key)); });
    }
    outcome run_station(int channel, int mode = APCLI_BY_BSSID) {
        return watch([&] {
            wlan radio;
            return radio.init() | radio.do_infra_mode(text(ssid), text(bssid), AUTH_WPA2PSK, ENC_TKIP_AES, text(key),
                                                      channel, static_cast<set_apcli_from_cam>(mode), 1);
        });
    }
};

TEST_F(mtk_modes, access_point_stops_at_the_step_that_fails) {
    const std::tuple<int, const char*, std::size_t> failures[] = {
        {1, "", 7}, // the region: it serves without it
        {2, "set ap fail\n", 2},
        {3, "set auth fail\n", 3},
        {4, "set enc and key fail\n", 6}, // all that belongs to the cipher is still sent
        {6, "set enc and key fail\n", 6},
        {7, "set ssid fail\n", 7},
    };
    for (const auto& [nth, message, sent] : failures) {
        plug_in(refusing(nth));
        const outcome run = run_ap();
        EXPECT_EQ(run.result, *message == '\0' ? 0 : -1);
        EXPECT_EQ(run.err, message);
        EXPECT_EQ(said().size(), sent);
    }
    EXPECT_EQ(run_ap(static_cast<auth_from_cam>(8)).err, "set auth fail\n");
}

TEST_F(mtk_modes, station_chooses_its_interface_by_channel) {
    const std::string any = "00:00:00:00:00:00";
    const lines pause = {"- sleep 2 s"};
    const std::tuple<int, int, lines> channels[] = {
        {14, 1, station("wlan0", bssid, "Channel=14")},
        {-3, 1, station("wlan0", bssid, "Channel=-3")},
        {15, 1, station("apclii0", bssid, "Channel=15")},
        {36, 0, station("apclii0", any, "ApCliAutoConnect=1")},
        {0, 1, station("wlan0", bssid, "Channel=999") + pause + station("apclii0", bssid, "Channel=1000")},
        {0, 2, station("wlan0", any, "ApCliAutoConnect=1") + pause + station("apclii0", any, "ApCliAutoConnect=1")},
    };
    for (const auto& [channel, mode, commands] : channels) {
        plug_in(willing);
        const outcome run = run_station(channel, mode);
        EXPECT_EQ(run.result, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(said(), commands);
    }
}

TEST_F(mtk_modes, station_stops_at_the_step_that_fails) {
    const std::pair<int, const char*> failures[] = {
        {1, "enable apcli failed\n"}, {2, ""}, // the region: a camera joins without it
        {3, "set auth fail\n"},       {4, "set enc and key fail\n"},
        {8, "set ssid fail\n"},       {9, "set bssid fail\n"},
        {10, "set apcli fail\n"},     {11, "set channel fail\n"},
    };
    for (const auto& [nth, message] : failures)
        for (const bool second_pass : {false, true}) { // which is told, too, but the first one stands
            plug_in(refusing(second_pass ? 11 + nth : nth));
            const outcome run = run_station(0);
            EXPECT_EQ(run.err, message);
            EXPECT_EQ(run.result, *message == '\0' || second_pass ? 0 : -1) << nth;
        }
}

TEST_F(mtk_modes, overlong_bssid_is_cut_to_30_characters_and_a_missing_one_refused) {
    plug_in(willing);
    std::string long_bssid = "0123456789012345678901234567890123456789";
    EXPECT_EQ(do_infra_mode_mtk(text(ssid), text(long_bssid), AUTH_OPEN, ENC_NONE, nullptr, 6, 1), -1);
    EXPECT_EQ(said().back(), "wlan0 set ApCliBssid=012345678901234567890123456789 = EINVAL");
    EXPECT_EQ(do_infra_mode_mtk(text(ssid), nullptr, AUTH_OPEN, ENC_NONE, nullptr, 6, 1), -1);
}

TEST_F(mtk_modes, repeater_is_access_point_then_station) {
    const std::tuple<int, int, const char*, std::size_t> rows[] = {
        {1000, 0, "", 19},
        {8, 0, "", 19},                // the automatic channel is not worth failing for
        {7, -1, "set ssid fail\n", 7}, // the station is left alone
        {9, -1, "enable apcli failed\n", 9},
    };
    const lines all = access_point + lines{"ra0 set AutoChannelSel=2"} + station("wlan0", bssid, "Channel=6");
    for (const auto& [refused, result, err, sent] : rows) {
        plug_in(refusing(refused));
        const outcome run = watch([] {
            return do_repeater_mode_mtk(text(ssid), AUTH_WPA2PSK, ENC_AES, text(key), text(ssid), text(bssid),
                                        AUTH_WPA2PSK, ENC_TKIP_AES, text(key), 6);
        });
        EXPECT_EQ(run.result, result);
        EXPECT_EQ(run.err, err);
        lines expected(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(sent));
        if (refused <= 19)
            expected.at(static_cast<std::size_t>(refused) - 1) += " = EIO";
        EXPECT_EQ(said(), expected);
    }
}

} // namespace
