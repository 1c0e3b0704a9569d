// SPDX-License-Identifier: MIT
// The command as a person or a script meets it: each run is the real program on a virtual camera.

#include "tests/wlanctl/wlanctl_test.h"

namespace {

const std::regex changes("system|set|kill|conf"); // in a journal

TEST_F(wlanctl, says_why_it_cannot_and_changes_nothing) {
    const scene scan_refused = scene("realtek").fault("ioctl", "EBUSY").match("SIOCSIWSCAN").times(0);
    const struct {
        scene camera;
        const char* arguments;
        const char* why;
        int status = 2;
        std::string input = {};
    } rows[] = {
        {mediatek, "jion Office", "unknown command: jion"},
        {mediatek, "join", "SSID or --stored is required"},
        {mediatek, "join Office --stored", "--stored excludes SSID"},
        {mediatek, "join 123456789012345678901234567890123", "1 to 32 bytes"},
        {mediatek, "join 'a\nb'", "no line feed"},
        {mediatek, "join Office --bssid 02:00:5e:00:00:1", "six two-digit"},
        {mediatek, "join Office --channel 15", "no channel 15"},
        {mediatek, "join Office --channel 38", "no channel 38"},
        {mediatek, "join Office --channel 197", "no channel 197"},
        {mediatek, "join Office --channel -1", "no channel -1"},
        {mediatek, "join Office --channel 6a", "no channel 6a"},
        {mediatek, "join Office --auth open --enc aes", "open does not work with the cipher aes"},
        {mediatek, "join Office --auth wpa2psk --enc none", "does not work with the cipher none"},
        {mediatek, "join Office --auth open --key office-key", "takes no key"},
        {mediatek, "join Office --auth wpa2psk", "--key-file", 2, "office-key\n"}, // no terminal to ask on
        {mediatek, "join Office --key-file -", "8 to 63 characters", 2, "1234567\n"},
        {mediatek, "join Office --key-file -", "8 to 63 characters", 2, std::string(1000, 'a')},
        {mediatek, "join Office --key-file -", "control characters", 2, "office\nkey\n"},
        {mediatek, "join Office --key-file -", "control characters", 2, {"office\0key", 10}},
        {mediatek, "join Office --enc wep --key-file -", "5 or 13 characters", 2, "123456"},
        {mediatek, "bbp ra0 66=1 1 1", "a register is a number"},
        {mediatek, "ap start --ssid 'a\033b\\' --key short", R"("a\x1bb\x5c")"},
        {realtek, "ap start --ssid Camera --enc wep --key 12345", "Realtek"},
        {realtek, "join Office --channel 6", "Realtek"},
        {realtek, "join Office --bssid 02:00:5e:00:00:01", "Realtek"},
        {realtek, "join Office --auth mixed --key 12345678", "Realtek"},
        {realtek, "survey --no-trigger", "Realtek"},
        {realtek, "wps", "Realtek"},
        {realtek, "bbp wlan0 66 1 1", "Realtek"},
        {realtek, "ap start --stored",
         "camera.conf: access_point.ssid: is missing\nwlanctl: access point from the stored settings: the stored", 1},
        {scan_refused, "survey", "SIOCSIWSCAN: Device or resource busy\nwlanctl: survey", 1},
        {mediatek, "bbp wlan0 fff 1 0xffffffff", "wlanctl: register fff of wlan0: not changed", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments);
        plug_in(row.camera);
        EXPECT_EQ(run(row.arguments, row.input), row.status);
        EXPECT_EQ(out, "");
        EXPECT_TRUE(has(err, row.why));
        EXPECT_FALSE(std::regex_search(journal(), changes));
    }
}

TEST_F(wlanctl, without_an_adapter_says_what_to_do) {
    plug_in(scene("none"));
    for (const std::string arguments : {"adapter", "status", "survey", "wps", "ap start --stored", "ap stop",
                                        "join Office", "repeat --ssid Office --ap-ssid Camera"}) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(run("--json " + arguments), 1);
        const auto answer = nlohmann::json::parse(out);
        EXPECT_EQ(answer["ok"], false);
        EXPECT_TRUE(has(answer.value("error", ""), "no Wi-Fi adapter"));
        EXPECT_TRUE(has(answer.value("next", ""), "plug the adapter in"));
    }
    EXPECT_FALSE(std::regex_search(journal(), changes));
}

TEST_F(wlanctl, joins_with_the_key_from_its_input) {
    plug_in(mediatek);
    EXPECT_EQ(told("join Office --key-file - --channel 6", "office-key\r\n"),
              "done       joined \"Office\"\nssid       Office\nbssid      02:00:5e:00:00:01\nchannel    6\n"
              "signal     -40 dBm\ninterface  wlan0\naddress    -\nseconds    4\n");
    EXPECT_TRUE(has(journal(), "ApCliWPAPSK=office-key  -> ok"));
}

TEST_F(wlanctl, status_is_one_json_object) {
    plug_in(mediatek);
    EXPECT_EQ(run("join Office --key-file - --channel 6", "office-key"), 0);
    const auto answer = nlohmann::json::parse(told("status --json")); // with nothing of the library's around it
    EXPECT_EQ(answer["family"], "mediatek");
    EXPECT_EQ(answer["wired_link"], "up");
    EXPECT_EQ(answer["interfaces"][1]["associated"], true);
    EXPECT_EQ(answer["interfaces"][1]["channel"], 6);
    EXPECT_EQ(answer["interfaces"][2]["channel"], nullptr);
}

TEST_F(wlanctl, passphrases_of_daemons_are_the_owner_s) {
    plug_in(realtek);
    EXPECT_EQ(run("ap start --ssid Camera --key camera-key"), 0);
    EXPECT_TRUE(has(read("/world/tmp/hostapd.conf"), "wpa_passphrase=camera-key\n"));
    EXPECT_EQ(fs::status("world/tmp/hostapd.conf").permissions(), fs::perms(0600));
}

TEST_F(wlanctl, access_point_runs_until_it_is_stopped) {
    plug_in(realtek);
    EXPECT_EQ(run("ap start --ssid Camera --key camera-key"), 0);
    EXPECT_TRUE(has(told("status"), "hostapd runs\n"));
    EXPECT_EQ(run("ap stop"), 0);
    EXPECT_TRUE(has(journal(), "ifdown wlan1"));
}

TEST_F(wlanctl, start_that_brings_no_daemon_up_fails) {
    const scene camera = realtek.key("hostapd", "wrapped");
    const struct {
        const char* name;
        scene camera;
        const char* arguments;
        const char* why; // after what the daemon said
    } rows[] = {
        {"40 MHz do not fit", camera.key("best_channel", 11), "ap start --ssid Camera --key camera-key",
         "Could not select hw_mode and channel. (-3)\nwlan1: Unable to setup interface.\n"
         "wlanctl: access point \"Camera\" (wpa2psk, aes): hostapd does not run"},
        {"no such program", realtek.missing_program("wpa_supplicant"), "join Office --key office-key",
         "wlanctl: station for \"Office\" (wpa2psk, aes): the camera has no program wpa_supplicant"},
        {"no such driver", realtek.key("hostapd", "stock"), "repeat --ssid Office --key office-key --ap-ssid Camera",
         "repeater \"Camera\" (open, none) for \"Office\" (wpa2psk, aes): hostapd does not run"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        EXPECT_EQ(run(row.arguments), 1);
        EXPECT_TRUE(has(err, row.why));
    }
}

TEST_F(wlanctl, pid_file_without_a_pid_is_no_daemon) {
    plug_in(realtek.key("hostapd", "stock").file("/tmp/hostapd.pid", {"0"}));
    EXPECT_EQ(run("ap start --ssid Camera --key camera-key"), 1);
    EXPECT_TRUE(has(err, "hostapd does not run"));
}

TEST_F(wlanctl, channel_is_told_as_its_number) {
    const struct {
        const char* name;
        scene camera;
        int channel;
    } rows[] = {
        {"a number", realtek.key("frequencies", "channel"), 6},
        {"MHz", realtek, 6},
        {"the last of the band", scene("realtek").air(access_point("Office").channel(14).wpa2("office-key")), 14},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        EXPECT_EQ(run("join Office --key office-key"), 0);
        let_seconds_pass();
        const auto station = nlohmann::json::parse(told("status --json"))["interfaces"][0];
        EXPECT_EQ(station["associated"], true);
        EXPECT_EQ(station["channel"], row.channel);
    }
}

TEST_F(wlanctl, store_is_shown_without_keys_and_escapes) {
    plug_in(scene("none"));
    write("/camera.conf", "[access_point]\nssid = \"Caf\xc3\xa9\\x1b[31m\\xff\xe2\x80\xae\\\\\"\n"
                          "key = camera-key\nauth = wpa2psk\nenc = aes\n");
    EXPECT_EQ(run("store show"), 1); // the other sections are missing
    EXPECT_TRUE(has(out, "  ssid  Caf\xc3\xa9\\x1b[31m\\xff\\xe2\\x80\\xae\\x5c\n"));
    EXPECT_TRUE(has(out, "  key   (set, 10 characters)\n"));
    EXPECT_TRUE(has(out, "dhcp server  -\n"));
    EXPECT_FALSE(has(out, "camera-key"));
    EXPECT_FALSE(has(err, "camera-key"));
}

TEST_F(wlanctl, survey_has_figures_and_no_escapes) {
    const access_point near = access_point().key("ssid_hex", "1b5b41ff5c20").channel(14).level(-60);
    const access_point far = access_point("office").channel(36).level(-90).wpa2();
    const scene mtk = scene("mediatek").air(far).air(near);
    const struct {
        const char* name;
        scene camera;
        const char* arguments;
        const char* list;
    } rows[] = {
        {"MediaTek, version 2", mtk, "survey", R"(listed  2

name                bssid              channel  band     security      signal
\x1b[A\xff\x5c\x20  02:00:00:00:00:02  14       2.4 GHz  OPEN          ####.  80 %
office              02:00:00:00:00:01  36       5 GHz    WPA2-PSK AES  #....  20 %
)"},
        {"MediaTek, version 1", mtk.key("survey_table", 1), "survey", R"(listed  2

name                bssid              channel  band     security     signal
\x1b[A\xff\x5c\x20  02:00:00:00:00:02  14       2.4 GHz  OPEN         ####. -60 dBm
office              02:00:00:00:00:01  36       5 GHz    WPA2PSK AES  #.... -90 dBm
)"},
        {"Realtek", scene("realtek").key("scan", {{"max_quality", 80}}).air(far).air(near), "survey --sort name",
         R"(listed  2

name                bssid              channel  band     security      signal
\x1b[A\xff\x5c\x20  02:00:00:00:00:02  14       2.4 GHz  OPEN          ##### 100 %
office              02:00:00:00:00:01  36       5 GHz    WPA2-PSK AES  #....  25 %
)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        EXPECT_EQ(told(row.arguments), row.list);
        EXPECT_EQ(err, ""); // no progress where there is no terminal
    }
}

TEST_F(wlanctl, last_table_is_read_without_a_scan) {
    plug_in(mediatek);
    EXPECT_TRUE(has(told("survey --no-trigger"), "listed  0\n"));
    EXPECT_EQ(run("survey"), 0);
    const auto network = nlohmann::json::parse(told("survey --no-trigger --json"))["networks"][0];
    EXPECT_EQ(network["name"], "Office");
    EXPECT_EQ(network["signal_percent"], 100);
}

TEST_F(wlanctl, typed_key_is_hidden_until_ctrl_c) {
    plug_in(mediatek);
    const terminal terminal(command("join Office --auth wpa2psk"));
    EXPECT_TRUE(has(terminal.show(": "), "Key for "));
    EXPECT_FALSE(terminal.shows_typing());
    EXPECT_EQ(terminal.press_ctrl_c(), SIGINT); // which ended it
    EXPECT_TRUE(terminal.shows_typing());
}

TEST_F(wlanctl, ctrl_c_after_a_typed_key_cancels) {
    plug_in(realtek);
    const terminal terminal(command("join Office --wait 300", "5"));
    EXPECT_TRUE(has(terminal.show(": "), "Key for "));
    terminal.type("not-the-key");
    terminal.show("Joining");
    EXPECT_EQ(WEXITSTATUS(terminal.press_ctrl_c()), 1);
    EXPECT_TRUE(has(terminal.show("--stored"), "cancelled, and stopped"));
    EXPECT_FALSE(fs::exists("world/tmp/wpa_supplicant.pid"));
}

// Push-button WPS
// --------------------------------------------------------------------------------------------------------------------

const access_point router =
    access_point("home").bssid("02:00:5e:00:00:01").channel(6).wpa2("home-key-1").pressed_button();
const scene nobody = scene("mediatek").wired();
const scene at_home = nobody.air(router);

const std::string settings = "# kept\n[client] ; note\nssid = Old ; too\nkey = old-key-1\nauth = open\nenc = none\n"
                             "odd = 1\nenabled = no\nbssid =\njoin = ssid\nchannel = 0\nkey_index = 1\n";
const std::string obtained = "# kept\n[client] ; note\nssid = home ; too\nkey = home-key-1\nauth = wpa2psk\nenc = aes\n"
                             "odd = 1\nenabled = yes\nbssid =\njoin = ssid\nchannel = 6\nkey_index = 1\n";

TEST_F(wlanctl, button_stores_its_network_alone) {
    plug_in(at_home);
    write("/camera.conf", settings);
    EXPECT_EQ(told("wps --verbose"),
              "done     network obtained and stored\nssid     home\nauth     wpa2psk\nenc      aes\n"
              "channel  6\nnext     see how it is doing with: wlanctl status\n");
    EXPECT_TRUE(has(err, "M8_RECEIVED]\nwlan0: WSC status:[STATUS_WSC_EAP_RSP_DONE_SENT]\n"));
    EXPECT_FALSE(has(out, "home-key"));
    EXPECT_FALSE(has(err, "home-key"));
    EXPECT_EQ(read("/camera.conf"), obtained);
    EXPECT_FALSE(has(journal(), "WscStop"));
    EXPECT_TRUE(has(journal(), "mii_mgr -g -p 0 -r 01  -> 0\n"));
}

TEST_F(wlanctl, failed_button_says_why_stores_nothing) {
    const struct {
        scene camera;
        const char* arguments;
        const char* err;
        bool stopped = true;
        std::string in_the_way = {}; // of the store's writer
    } rows[] = {
        {nobody, "wps", "[STATUS_WSC_PBC_NO_AP]\nwlanctl: push-button session: no network obtained in 120 s"},
        {at_home.air(router), "wps", "[STATUS_WSC_PBC_SESSION_OVERLAP]\nwlanctl: "},
        {at_home.key("wps", "fails"), "wps", "[STATUS_WSC_FAIL]\nwlanctl: "},
        {at_home.key("wps", "stalls"), "wps --timeout 3", "[STATUS_WSC_SCAN_AP]\nwlanctl: "},
        {at_home.fault("ioctl", "EIO").match("WscMode"), "wps",
         "set wsc failed\nwlanctl: push-button session: not started"},
        {at_home.key("answers", {{"profile", {"SSID=home"}}}), "wps", "makes no sense (-22)", false},
        {at_home, "wps", "cannot create: File exists\nwlanctl: push-button session: the stored", false,
         "camera.conf.new/in the way"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.err);
        plug_in(row.camera);
        write("/camera.conf", settings);
        if (!row.in_the_way.empty())
            fs::create_directories(row.in_the_way);
        EXPECT_EQ(run(row.arguments), 1);
        EXPECT_EQ(out, "");
        EXPECT_TRUE(has(err, row.err));
        EXPECT_EQ(read("/camera.conf"), settings);
        EXPECT_EQ(has(journal(), "WscStop=1  -> ok"), row.stopped);
    }
}

TEST_F(wlanctl, ctrl_c_stops_the_button_s_session) {
    plug_in(at_home.key("wps", "stalls"));
    write("/camera.conf", settings);
    const terminal terminal(command("wps", "1"));
    EXPECT_TRUE(has(terminal.show("STATUS_WSC_SCAN_AP"), "Press the router's WPS button"));
    EXPECT_EQ(WEXITSTATUS(terminal.press_ctrl_c()), 1);
    EXPECT_TRUE(has(terminal.show("--stored"), "cancelled, and stopped"));
    EXPECT_TRUE(has(journal(), "WscStop=1  -> ok"));
}

TEST_F(wlanctl, bits_of_a_baseband_register_change) {
    plug_in(scene("mediatek").key("registers", {{"66", "1f"}}));
    EXPECT_EQ(told("bbp wlan0 66 0x40 240"), "done  register 66 of wlan0: changed\n");
    EXPECT_TRUE(has(journal(), "66=4f  -> ok"));
}

} // namespace
