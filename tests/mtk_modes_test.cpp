#include "tests/camera_test.h"

#include "libwlan/libwlan.h"

namespace {

const std::string head = R"({"adapter": "mediatek", "clock_ms": 0,
    "files": {"/etc/camera.conf": ["[region]", "band_2g = 5", "band_5g = 7"]}, "faults": [)";

/// A scene whose driver refuses the nth command.
std::string refusing(int nth) {
    return head + R"({"call": "ioctl", "errno": "EIO", "nth": )" + std::to_string(nth) + "}]}";
}

std::string ssid = "Net";
std::string bssid = "02:00:00:00:00:01";
std::string key = "passphrase";

const lines access_point = {
    "ra0 set CountryRegion=5", "ra0 set RadioOn=1",         "ra0 set AuthMode=WPA2PSK", "ra0 set EncrypType=AES",
    "ra0 set SSID=Net",        "ra0 set WPAPSK=passphrase", "ra0 set SSID=Net",
};

/// What a station set-up sends on one interface.
lines station(const std::string& interface, const std::string& region, const std::string& joins,
              const std::string& ends_with) {
    const std::string commands[] = {
        "ApCliEnable=0",           region,          "ApCliAuthMode=WPA2PSK",
        "ApCliEncrypType=TKIPAES", "ApCliSsid=Net", "WpaMixPairCipher=WPA_TKIP_WPA2_AES",
        "ApCliWPAPSK=passphrase",  "ApCliSsid=Net", "ApCliBssid=" + joins,
        "ApCliEnable=1",           ends_with,
    };
    lines said;
    for (const std::string& command : commands)
        said.push_back(interface + " set " + command);
    return said;
}

class mtk_modes : public camera_test {
protected:
    outcome run_ap(auth_from_cam auth = AUTH_WPA2PSK) {
        return watch([&] { return do_ap_mode_mtk(ssid.data(), auth, ENC_AES, key.data()); });
    }

    outcome run_station(int channel, set_apcli_from_cam mode = APCLI_BY_BSSID) {
        return watch([&] {
            wlan radio;
            return radio.init() | radio.do_infra_mode(ssid.data(), bssid.data(), AUTH_WPA2PSK, ENC_TKIP_AES, key.data(),
                                                      channel, mode, 1);
        });
    }
};

TEST_F(mtk_modes, access_point_sends_its_sequence) {
    plug_in(head + "]}");
    const outcome run = run_ap();
    EXPECT_EQ(run.result, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(said(), access_point);
}

TEST_F(mtk_modes, access_point_stops_at_the_step_that_fails) {
    const struct {
        int nth;
        const char* message;
        std::size_t sent;
    } failures[] = {
        {2, "set ap fail\n", 2},          {3, "set auth fail\n", 3},
        {4, "set enc and key fail\n", 6}, // all that belongs to the cipher is still sent
        {6, "set enc and key fail\n", 6}, {7, "set ssid fail\n", 7},
    };
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.nth);
        plug_in(refusing(failure.nth));
        const outcome run = run_ap();
        EXPECT_EQ(run.result, -1);
        EXPECT_EQ(run.err, failure.message);
        EXPECT_EQ(said().size(), failure.sent);
    }
    plug_in(refusing(1)); // the region
    EXPECT_EQ(run_ap().result, 0);
    plug_in(head + "]}");
    EXPECT_EQ(run_ap(static_cast<auth_from_cam>(8)).err, "set auth fail\n");
}

TEST_F(mtk_modes, station_chooses_its_interface_by_channel) {
    const struct {
        int channel;
        set_apcli_from_cam mode;
        lines said;
    } channels[] = {
        {6, APCLI_BY_BSSID, station("wlan0", "CountryRegion=5", bssid, "Channel=6")},
        {14, APCLI_BY_BSSID, station("wlan0", "CountryRegion=5", bssid, "Channel=14")},
        {-3, APCLI_BY_BSSID, station("wlan0", "CountryRegion=5", bssid, "Channel=-3")},
        {15, APCLI_BY_BSSID, station("apclii0", "CountryRegionABand=7", bssid, "Channel=15")},
        {36, APCLI_BY_SSID, station("apclii0", "CountryRegionABand=7", "00:00:00:00:00:00", "ApCliAutoConnect=1")},
        {0, APCLI_BY_BSSID,
         station("wlan0", "CountryRegion=5", bssid, "Channel=999") + lines{"- sleep 2 s"} +
             station("apclii0", "CountryRegionABand=7", bssid, "Channel=1000")},
        {0, static_cast<set_apcli_from_cam>(2),
         station("wlan0", "CountryRegion=5", "00:00:00:00:00:00", "ApCliAutoConnect=1") + lines{"- sleep 2 s"} +
             station("apclii0", "CountryRegionABand=7", "00:00:00:00:00:00", "ApCliAutoConnect=1")},
    };
    for (const auto& channel : channels) {
        SCOPED_TRACE(channel.channel);
        plug_in(head + "]}");
        const outcome run = run_station(channel.channel, channel.mode);
        EXPECT_EQ(run.result, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(said(), channel.said);
    }
}

TEST_F(mtk_modes, station_stops_at_the_step_that_fails) {
    const struct {
        int nth;
        const char* message;
    } failures[] = {
        {1, "enable apcli failed\n"}, {2, ""}, // the region: a camera joins without it
        {3, "set auth fail\n"},       {4, "set enc and key fail\n"},
        {8, "set ssid fail\n"},       {9, "set bssid fail\n"},
        {10, "set apcli fail\n"},     {11, "set channel fail\n"},
    };
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.nth);
        plug_in(refusing(failure.nth));
        const outcome run = run_station(0);
        EXPECT_EQ(run.err, failure.message);
        EXPECT_EQ(run.result, *failure.message == '\0' ? 0 : -1);

        // The second pass is told, too, but counts as success: the first one stands.
        plug_in(refusing(11 + failure.nth));
        const outcome second = run_station(0);
        EXPECT_EQ(second.err, failure.message);
        EXPECT_EQ(second.result, 0);
    }
}

TEST_F(mtk_modes, overlong_bssid_is_cut_to_30_characters) {
    plug_in(head + "]}");
    std::string long_bssid = "0123456789012345678901234567890123456789";
    EXPECT_EQ(do_infra_mode_mtk(ssid.data(), long_bssid.data(), AUTH_OPEN, ENC_NONE, nullptr, 6, 1), -1);
    EXPECT_EQ(said().back(), "wlan0 set ApCliBssid=012345678901234567890123456789 = EINVAL");
}

TEST_F(mtk_modes, missing_texts_fail_at_their_step) {
    plug_in(head + "]}");
    const outcome no_name = watch([] { return do_ap_mode_mtk(nullptr, AUTH_OPEN, ENC_NONE, nullptr); });
    EXPECT_EQ(no_name.result, -1);
    EXPECT_EQ(no_name.err, "set ssid fail\n");
    const outcome no_bssid =
        watch([] { return do_infra_mode_mtk(ssid.data(), nullptr, AUTH_OPEN, ENC_NONE, nullptr, 6, 1); });
    EXPECT_EQ(no_bssid.result, -1);
    EXPECT_EQ(no_bssid.err, "set bssid fail\n");
}

TEST_F(mtk_modes, repeater_is_access_point_then_station) {
    const lines joined = station("wlan0", "CountryRegion=5", bssid, "Channel=6");
    auto repeat = [] {
        return watch([] {
            return do_repeater_mode_mtk(ssid.data(), AUTH_WPA2PSK, ENC_AES, key.data(), ssid.data(), bssid.data(),
                                        AUTH_WPA2PSK, ENC_TKIP_AES, key.data(), 6);
        });
    };
    plug_in(head + "]}");
    EXPECT_EQ(repeat().result, 0);
    EXPECT_EQ(said(), access_point + lines{"ra0 set AutoChannelSel=2"} + joined);

    plug_in(refusing(8)); // the automatic channel is not worth failing for
    EXPECT_EQ(repeat().result, 0);

    plug_in(refusing(7));
    EXPECT_EQ(repeat().err, "set ssid fail\n");
    EXPECT_EQ(said().size(), 7U); // the station is left alone

    plug_in(refusing(9));
    const outcome station_failed = repeat();
    EXPECT_EQ(station_failed.result, -1);
    EXPECT_EQ(station_failed.err, "enable apcli failed\n");
}

} // namespace
