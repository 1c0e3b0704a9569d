// SPDX-License-Identifier: MIT
// The sequences of commands that put a MediaTek adapter into a mode.

#include "tests/support/camera_test.h"

#include "libwlan/libwlan.h"
#include "tests/support/driver_hook.h"

namespace {

const scene camera = scene("mediatek").stored(stored_settings().region(5, 7));
const std::string ssid = "Net", bssid = "02:00:00:00:00:01", no_bssid = "00:00:00:00:00:00", key = "passphrase";

const lines access_point_commands = {
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

int serve() {
    return do_ap_mode_mtk(text(ssid), AUTH_WPA2PSK, ENC_AES, text(key));
}

int join(int channel, int mode) {
    wlan radio; // which keeps its socket
    EXPECT_EQ(radio.init(), 0);
    return radio.do_infra_mode(text(ssid), text(bssid), AUTH_WPA2PSK, ENC_TKIP_AES, text(key), channel,
                               static_cast<set_apcli_from_cam>(mode), 1);
}

int repeat() {
    return do_repeater_mode_mtk(text(ssid), AUTH_WPA2PSK, ENC_AES, text(key), text(ssid), text(bssid), AUTH_WPA2PSK,
                                ENC_TKIP_AES, text(key), 6);
}

/// A request and what it sends when the driver refuses nothing.
struct sequence {
    const char* name;
    int (*request)();
    lines commands;
};

const sequence ap = {"access point", serve, access_point_commands};
const sequence client = {"station", [] { return join(6, APCLI_BY_BSSID); }, station("wlan0", bssid, "Channel=6")};
const sequence repeater = {"repeater", repeat,
                           access_point_commands + lines{"ra0 set AutoChannelSel=2"} + client.commands};

class mtk_modes : public camera_test {
protected:
    ~mtk_modes() override { driver_hook = nullptr; }
};

TEST_F(mtk_modes, stop_at_the_step_that_fails) {
    const struct {
        const sequence& mode;
        int refused; // command
        const char* message;
        std::size_t sent; // commands
    } rows[] = {
        {ap, 0, "", 7}, // no refusal
        {ap, 1, "", 7}, // the region: it serves without it
        {ap, 2, "set ap fail\n", 2},
        {ap, 3, "set auth fail\n", 3},
        {ap, 4, "set enc and key fail\n", 6}, // all that belongs to the cipher is still sent
        {ap, 6, "set enc and key fail\n", 6},
        {ap, 7, "set ssid fail\n", 7},
        {client, 0, "", 11},
        {client, 1, "enable apcli failed\n", 1},
        {client, 2, "", 11}, // the region: a camera joins without it
        {client, 3, "set auth fail\n", 3},
        {client, 4, "set enc and key fail\n", 7},
        {client, 8, "set ssid fail\n", 8},
        {client, 9, "set bssid fail\n", 9},
        {client, 10, "set apcli fail\n", 10},
        {client, 11, "set channel fail\n", 11},
        {repeater, 0, "", 19},
        {repeater, 7, "set ssid fail\n", 7}, // the station is left alone
        {repeater, 8, "", 19},               // the automatic channel is not worth failing for
        {repeater, 9, "enable apcli failed\n", 9},
    };
    for (const auto& row : rows) {
        for (const int answer : {-1, 1}) { // anything but 0 is a refusal
            SCOPED_TRACE(print("%s, command %d answered %d", row.mode.name, row.refused, answer));
            plug_in(camera);
            int sent = 0;
            driver_hook = [&](unsigned long /*number*/, iwreq& /*request*/, int result) {
                return ++sent == row.refused ? answer : result;
            };
            const outcome run = watch(row.mode.request);
            EXPECT_EQ(run.err, row.message);
            EXPECT_EQ(run.result, *row.message == '\0' ? 0 : -1);
            lines expected = row.mode.commands;
            expected.resize(row.sent);
            EXPECT_EQ(said(), expected);
        }
    }
}

TEST_F(mtk_modes, station_chooses_its_interface_by_channel) {
    const lines pause = {"- sleep 2 s"};
    const struct {
        const char* name;
        int channel, mode;
        lines said;
    } rows[] = {
        {"last of 2.4 GHz", 14, 1, station("wlan0", bssid, "Channel=14")},
        {"below 0", -3, 1, station("wlan0", bssid, "Channel=-3")},
        {"first of 5 GHz", 15, 1, station("apclii0", bssid, "Channel=15")},
        {"by SSID", 36, 0, station("apclii0", no_bssid, "ApCliAutoConnect=1")},
        {"automatic", 0, 1, station("wlan0", bssid, "Channel=999") + pause + station("apclii0", bssid, "Channel=1000")},
        {"automatic, unknown mode", 0, 2,
         station("wlan0", no_bssid, "ApCliAutoConnect=1") + pause + station("apclii0", no_bssid, "ApCliAutoConnect=1")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera);
        EXPECT_EQ(join(row.channel, row.mode), 0);
        EXPECT_EQ(said(), row.said);
    }
}

TEST_F(mtk_modes, failed_second_pass_is_told_and_forgiven) {
    const struct {
        int refused; // command
        const char* message;
    } rows[] = {{12, "enable apcli failed\n"}, {22, "set channel fail\n"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.refused);
        plug_in(camera.fault("ioctl", "EIO").nth(row.refused));
        const outcome run = watch([] { return join(0, APCLI_BY_BSSID); });
        EXPECT_EQ(run.result, 0);
        EXPECT_EQ(run.err, row.message);
    }
}

TEST_F(mtk_modes, overlong_bssid_is_cut_to_30_characters) {
    plug_in(camera);
    const std::string digits = "0123456789012345678901234567890123456789";
    EXPECT_EQ(do_infra_mode_mtk(text(ssid), text(digits), AUTH_OPEN, ENC_NONE, nullptr, 6, 1), -1);
    EXPECT_EQ(said().back(), "wlan0 set ApCliBssid=" + digits.substr(0, 30) + " = EINVAL");
}

TEST_F(mtk_modes, missing_bssid_is_refused) {
    plug_in(camera);
    EXPECT_EQ(do_infra_mode_mtk(text(ssid), nullptr, AUTH_OPEN, ENC_NONE, nullptr, 6, 1), -1);
}

} // namespace
