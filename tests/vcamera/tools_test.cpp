// SPDX-License-Identifier: MIT
// Debian's own tools for hostapd, wpa_supplicant and Wireless Extensions on the camera.

#include "tests/vcamera/launched_test.h"

namespace {

constexpr char camera[] = R"({"adapter": "realtek",
"air": [{"ssid": "Office", "bssid": "02:00:00:00:01:00", "channel": 6, "security": "wpa2", "key": "office-key"}],
"visitors": [{"address": "02:00:00:00:00:07", "signal": -50}],
"files": {
"/tmp/wpa_supplicant.conf": ["ctrl_interface=/var/run/wpa_supplicant",
    "network={", "ssid=\"Office\"", "psk=\"office-key\"", "}"],
"/tmp/hostapd.conf": ["ctrl_interface=/var/run/hostapd", "interface=wlan1", "ssid=Camera"]}})";

class tools_test : public launched_test {
protected:
    tools_test() {
        // Where there is no room for a socket's address.
        folder += "/" + std::string(120, 'x');
        fs::create_directory(folder);
        fs::current_path(folder);
        write("/scene.json", camera);
        vcamera += " --speed 0";
        run("awk 'BEGIN { system(\"wpa_supplicant -B -c /tmp/wpa_supplicant.conf -i wlan0\") }'");
        run("awk 'BEGIN { system(\"hostapd -B /tmp/hostapd.conf\") }'");
    }
    ~tools_test() override { folder = fs::path(folder).parent_path(); }

    /// Skips a test on machines without its tool.
    bool lacks(const char* tool) { return shell(std::string("command -v ") + tool) != 0; }
};

TEST_F(tools_test, wpa_cli_asks_and_listens) {
    if (lacks("wpa_cli"))
        GTEST_SKIP() << "Debian's package wpasupplicant";
    EXPECT_TRUE(has(told("wpa_cli status"), "Selected interface 'wlan0'\nwpa_state=SCANNING\n"));
    EXPECT_EQ(told("wpa_cli -i wlan0 scan"), "FAIL-BUSY\n");
    run("sleep 4");
    EXPECT_TRUE(has(told("wpa_cli -i wlan0 status"), "ssid=Office\n"));
    EXPECT_TRUE(has(told("sh -c '(sleep 1; echo disconnect; sleep 1; echo quit) | wpa_cli -i wlan0'"),
                    "<3>CTRL-EVENT-DISCONNECTED bssid=02:00:00:00:01:00 reason=3 locally_generated=1\n"));
    EXPECT_EQ(told("wpa_cli -i wlan0 terminate"), "OK\n");
    run("sleep 1");
    EXPECT_NE(run("wpa_cli -i wlan0 status"), 0);
}

TEST_F(tools_test, hostapd_cli_lists_visitors) {
    if (lacks("hostapd_cli"))
        GTEST_SKIP() << "Debian's package hostapd";
    EXPECT_EQ(told("hostapd_cli -i wlan1 ping"), "PONG\n");
    run("sleep 1");
    EXPECT_TRUE(has(told("hostapd_cli all_sta"), "Selected interface 'wlan1'\n02:00:00:00:00:07\nflags="));
    EXPECT_TRUE(has(out, "\nsignal=-50\n"));
}

TEST_F(tools_test, iwconfig_shows_the_network) {
    if (lacks("iwconfig"))
        GTEST_SKIP() << "Debian's package wireless-tools";
    run("sleep 4");
    EXPECT_TRUE(has(told("iwconfig wlan0"), "ESSID:\"Office\""));
    EXPECT_TRUE(has(out, "Frequency:2.437 GHz  Access Point: 02:00:00:00:01:00"));
    EXPECT_TRUE(has(out, "Signal level=-60 dBm"));
    EXPECT_EQ(told("iwgetid wlan0 --raw"), "Office\n");
}

} // namespace
