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

const std::string ssid = "Net", bssid = "02:00:00:00:00:01", key = "passphrase";

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

int run_station(int channel, int mode = APCLI_BY_BSSID) {
    wlan radio; // which keeps its socket
    return radio.init() | radio.do_infra_mode(text(ssid), text(bssid), AUTH_WPA2PSK, ENC_TKIP_AES, text(key), channel,
                                              static_cast<set_apcli_from_cam>(mode), 1);
}

/// A request and what it sends when the driver refuses nothing.
struct sequence {
    int (*request)();
    lines commands;
};

const sequence ap = {[] { return do_ap_mode_mtk(text(ssid), AUTH_WPA2PSK, ENC_AES, text(key)); }, access_point};
const sequence client = {[] { return run_station(6); }, station("wlan0", bssid, "Channel=6")};
const sequence repeater = {[] {
                               return do_repeater_mode_mtk(text(ssid), AUTH_WPA2PSK, ENC_AES, text(key), text(ssid),
                                                           text(bssid), AUTH_WPA2PSK, ENC_TKIP_AES, text(key), 6);
                           },
                           access_point + lines{"ra0 set AutoChannelSel=2"} + client.commands};

using mtk_modes = camera_test;

TEST_F(mtk_modes, sequences_stop_at_the_step_that_fails) {
    const std::tuple<const sequence&, int, const char*, std::size_t> rows[] = {
        // refused command, message, commands sent
        {ap, 1, "", 7}, // the region: it serves without it
        {ap, 2, "set ap fail\n", 2},
        {ap, 3, "set auth fail\n", 3},
        {ap, 4, "set enc and key fail\n", 6}, // all that belongs to the cipher is still sent
        {ap, 6, "set enc and key fail\n", 6},
        {ap, 7, "set ssid fail\n", 7},
        {client, 1, "enable apcli failed\n", 1},
        {client, 2, "", 11}, // the region: a camera joins without it
        {client, 3, "set auth fail\n", 3},
        {client, 4, "set enc and key fail\n", 7},
        {client, 8, "set ssid fail\n", 8},
        {client, 9, "set bssid fail\n", 9},
        {client, 10, "set apcli fail\n", 10},
        {client, 11, "set channel fail\n", 11},
        {repeater, 7, "set ssid fail\n", 7}, // the station is left alone
        {repeater, 8, "", 19},               // the automatic channel is not worth failing for
        {repeater, 9, "enable apcli failed\n", 9},
    };
    for (const auto& [sequence, refused, message, sent] : rows) {
        plug_in(refusing(refused));
        const outcome run = watch(sequence.request);
        EXPECT_EQ(run.err, message);
        EXPECT_EQ(run.result, *message == '\0' ? 0 : -1) << refused;
        lines expected = sequence.commands;
        expected.resize(sent);
        expected.at(static_cast<std::size_t>(refused) - 1) += " = EIO";
        EXPECT_EQ(said(), expected);
    }
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
        plug_in(refusing(1000));
        EXPECT_EQ(run_station(channel, mode), 0);
        EXPECT_EQ(said(), commands);
    }
}

TEST_F(mtk_modes, second_pass_is_told_when_it_fails_but_the_first_one_stands) {
    for (const auto& [refused, message] : {std::pair{12, "enable apcli failed\n"}, {22, "set channel fail\n"}}) {
        plug_in(refusing(refused));
        const outcome run = watch([] { return run_station(0); });
        EXPECT_EQ(std::to_string(run.result) + run.err, std::string("0") + message);
    }
}

TEST_F(mtk_modes, overlong_bssid_is_cut_to_30_characters_and_a_missing_one_refused) {
    plug_in(refusing(1000));
    const std::string digits = "0123456789012345678901234567890123456789";
    EXPECT_EQ(do_infra_mode_mtk(text(ssid), text(digits), AUTH_OPEN, ENC_NONE, nullptr, 6, 1), -1);
    EXPECT_EQ(said().back(), "wlan0 set ApCliBssid=" + digits.substr(0, 30) + " = EINVAL");
    EXPECT_EQ(do_infra_mode_mtk(text(ssid), nullptr, AUTH_OPEN, ENC_NONE, nullptr, 6, 1), -1);
}

} // namespace
