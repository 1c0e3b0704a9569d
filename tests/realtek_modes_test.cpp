#include "tests/camera_test.h"

#include <tuple>

#include "libwlan/libwlan.h"

namespace {

const std::string scene = R"({"adapter": "realtek", "best_channel": 11,
    "files": {"/etc/camera.conf": ["[system]", "model = Eye 3", "manufacturer = ACME"]}})";

const std::string supplicant_head = "ctrl_interface=/var/run/wpa_supplicant\n"
                                    "device_type=4-0050F204-3\n"
                                    "model_name=Eye 3\n"
                                    "manufacturer=ACME\n"
                                    "os_version=01020300\n"
                                    "config_methods=push_button virtual_push_button\n"
                                    "eapol_version=1\n"
                                    "network={\n"
                                    "\tscan_ssid=1\n"
                                    "\tauth_alg=OPEN\n";

std::string hostapd_file(const std::string& name_line, const std::string& security, int channel = 11) {
    return "ctrl_interface=/var/run/hostapd\ninterface=wlan1\n" + name_line + "channel=" + std::to_string(channel) +
           "\nwps_state=0\nauth_algs=1\n" + security +
           "driver=rtl871xdrv\nbeacon_int=100\nhw_mode=g\nieee80211n=1\nwme_enabled=1\n"
           "ht_capab=[SHORT-GI-20][SHORT-GI-40][HT40+]\nmax_num_sta=8\n";
}

const char* const start_hostapd = "system hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid";
const char* const start_supplicant =
    "system wpa_supplicant -B -c /tmp/wpa_supplicant.conf -i wlan0 -P /tmp/wpa_supplicant.pid";

const std::string secret = "passphrase", net = "Net";

class realtek_modes : public camera_test {
protected:
    outcome run_ap(const std::string& ssid, int auth, int enc, const std::string& key) {
        return watch([&] {
            return do_ap_mode_realtek(text(ssid), static_cast<auth_from_cam>(auth), static_cast<enc_from_cam>(enc),
                                      text(key));
        });
    }
    outcome run_station(const std::string& ssid, int auth, const std::string& key, int enc = 0) {
        return watch([&] {
            return do_infra_mode_realtek(text(ssid), static_cast<auth_from_cam>(auth), static_cast<enc_from_cam>(enc),
                                         text(key));
        });
    }
    outcome run_repeater() {
        return watch([] {
            return do_repeater_mode_realtek(text(net), AUTH_WPA2PSK, ENC_AES, text(secret), text(net), AUTH_OPEN,
                                            ENC_NONE, text(secret));
        });
    }
};

TEST_F(realtek_modes, station_file_says_how_to_join) {
    const std::string raw_key(64, 'a');
    const std::string passphrase(63, 'a');
    const std::string wpa = "\tkey_mgmt=WPA-PSK\n\tproto=WPA\n\tpsk=";
    const std::string rsn = "\tkey_mgmt=WPA-PSK\n\tproto=RSN\n\tpsk=";
    const std::tuple<std::string, std::vector<int>, std::string, std::string> files[] = {
        {"Net", {0}, "ignored key", "\tssid=\"Net\"\n\tkey_mgmt=NONE\n}\n"},
        {"Net", {2}, "passphrase", "\tssid=\"Net\"\n" + wpa + "\"passphrase\"\n}\n"},
        {"a \"b\"", {5}, passphrase, "\tssid=\"a \"b\"\"\n" + rsn + "\"" + passphrase + "\"\n}\n"},
        {"Net", {5}, raw_key, "\tssid=\"Net\"\n" + rsn + raw_key + "\n}\n"},
        {std::string(130, 's'), {0}, "", "\tssid=\"" + std::string(121, 's') + "\n\tkey_mgmt=NONE\n}\n"},
        {"Net", {2}, std::string(130, 'k'), "\tssid=\"Net\"\n" + wpa + "\"" + std::string(121, 'k') + "\n}\n"},
        {"Net", {1, 3, 4, 6, 7, 8, 255}, "passphrase", "\tssid=\"Net\"\n"}, // beyond the daemon
    };
    for (const auto& [ssid, auths, key, rest] : files)
        for (const int auth : auths)
            for (const int enc : {0, 3, 255}) {
                plug_in(scene);
                const outcome run = run_station(ssid, auth, key, enc);
                const bool refused = rest.find('}') == std::string::npos; // the file is not finished
                EXPECT_EQ(run.result, refused ? -1 : 0) << auth;
                EXPECT_EQ(run.err.find("Unknow authentication mode of Wireless settings."),
                          refused ? 0 : std::string::npos);
                EXPECT_EQ(run.opened, refused ? 2 : 1); // a quiet console, the socket of a failed request
                EXPECT_EQ(read("/tmp/wpa_supplicant.conf"), supplicant_head + rest);
                EXPECT_EQ(said().back().rfind(start_supplicant, 0), 0U); // started all the same
            }
}

TEST_F(realtek_modes, access_point_file_says_how_to_serve) {
    auto secured = [](const std::string& wpa, const std::string& pairwise, const std::string& key = "passphrase") {
        return "wpa=" + wpa + "\n" + pairwise + "\nwpa_passphrase=" + key +
               "\nwpa_key_mgmt=WPA-PSK\nwpa_group_rekey=86400\n";
    };
    const std::tuple<std::vector<int>, int, std::string> files[] = {
        {{0, 1, 3, 255}, 3, ""},
        {{2}, 2, secured("1", "wpa_pairwise=TKIP")},
        {{2}, 3, secured("1", "wpa_pairwise=CCMP")},
        {{2}, 0, secured("1", "wpa_pairwise=TKIP CCMP")},
        {{5}, 2, secured("2", "rsn_pairwise=TKIP")},
        {{5}, 3, secured("2", "rsn_pairwise=CCMP")},
        {{5}, 255, secured("2", "rsn_pairwise=TKIP CCMP")},
        {{7}, 3, secured("3", "wpa_pairwise=CCMP")},
        {{7}, 4, secured("3", "wpa_pairwise=TKIP CCMP")},
    };
    for (const auto& [auths, enc, security] : files)
        for (const int auth : auths) {
            plug_in(scene);
            EXPECT_EQ(run_ap("Net", auth, enc, "passphrase"),
                      (outcome{0, "get_best_channel[245] get_best_channel=11\n", "", 1}));
            EXPECT_EQ(read("/tmp/hostapd.conf"), hostapd_file("ssid=Net\n", security)) << auth << enc;
            EXPECT_EQ(said(), lines{start_hostapd});
        }
    plug_in(scene); // a cut name takes its line feed along, a cut key does not
    run_ap(std::string(130, 's'), 5, 3, std::string(130, 'k'));
    EXPECT_EQ(read("/tmp/hostapd.conf"),
              hostapd_file("ssid=" + std::string(122, 's'), secured("2", "rsn_pairwise=CCMP", std::string(112, 'k'))));
}

TEST_F(realtek_modes, channel_is_the_first_driver_s_recommendation) {
    const std::tuple<const char*, const char*, int> recommendations[] = {
        {"rtl8188eu", "best_channel_5G = 36\nbest_channel_24G = 11\nbest_channel_24G = 6\n", 11},
        {"rtl8188eu", "nothing to recommend\n", 1},
        {"rtl8188eu", "best_channel_24G=6\n", 0}, // ends where its value should begin
        {"rtl8188eu", "best_channel_24G=6", 1},   // and before
        {"rtl8192eu", "best_channel_24G = 11\n", 1},
    };
    for (const auto& [driver, content, recommended] : recommendations) {
        plug_in(R"({"adapter": "realtek"})");
        write(print("/proc/net/%s/wlan1/best_channel", driver), content);
        int channel = 1;
        EXPECT_EQ(watch([&] { return get_best_channel(&channel); }).result, recommended);
        write("/etc/camera.conf", "[system]\nmodel = Eye 3\nmanufacturer = ACME\n");
        run_ap("Net", 0, 0, "");
        EXPECT_EQ(read("/tmp/hostapd.conf"), hostapd_file("ssid=Net\n", "", recommended));
    }
    EXPECT_EQ(get_best_channel(nullptr), 1);
}

TEST_F(realtek_modes, requests_replace_the_daemons_of_earlier_ones) {
    plug_in(scene);
    run_ap("Net", 5, 3, "passphrase");
    run_station("Net", 5, "passphrase");
    const std::string hostapd = read("/tmp/hostapd.pid").substr(0, 7);
    const std::string supplicant = read("/tmp/wpa_supplicant.pid").substr(0, 7);
    EXPECT_EQ(run_repeater().result, 0);
    EXPECT_EQ(said(6), (lines{supplicant + " kill 15", supplicant + " kill 0 = ESRCH", hostapd + " kill 15",
                              hostapd + " kill 0 = ESRCH", start_hostapd, start_supplicant}));
}

TEST_F(realtek_modes, failed_access_point_keeps_the_repeater_from_joining) {
    plug_in(R"({"adapter": "realtek"})"); // a store without its file
    EXPECT_EQ(run_repeater().result, -1);
    EXPECT_FALSE(exists("/tmp/hostapd.conf"));
    EXPECT_EQ(said(), lines{std::string(start_hostapd) + " = 1"}); // with whatever file there was
}

TEST_F(realtek_modes, bad_texts_write_no_file) {
    plug_in(scene);
    EXPECT_EQ(do_ap_mode_realtek(nullptr, AUTH_OPEN, ENC_NONE, nullptr), -1);
    EXPECT_EQ(do_ap_mode_realtek(text(net), AUTH_WPA2PSK, ENC_AES, nullptr), -1);
    EXPECT_EQ(do_ap_mode_realtek(text("x\nwpa=0"), AUTH_OPEN, ENC_NONE, nullptr), -1);
    EXPECT_EQ(do_infra_mode_realtek(text(net), AUTH_WPAPSK, ENC_AES, text("x\nwpa=0")), -1);
    EXPECT_EQ(do_infra_mode_realtek(nullptr, AUTH_OPEN, ENC_AES, nullptr), -1);
    EXPECT_FALSE(exists("/tmp/hostapd.conf") || exists("/tmp/wpa_supplicant.conf"));
    EXPECT_EQ(do_ap_mode_realtek(text(net), AUTH_OPEN, ENC_NONE, nullptr), 0);
    EXPECT_EQ(do_infra_mode_realtek(text(net), AUTH_OPEN, ENC_NONE, nullptr), 0);
}

TEST_F(realtek_modes, debug_level_traces_and_holds_the_daemon_in_the_foreground) {
    const std::tuple<const char*, bool, std::string> levels[] = {
        {"0", false, "-B"}, {"1", true, "-B"}, {"2", true, "-d"}, {"6", true, "-d"}, {"x", false, "-B"}};
    for (const auto& [level, traced, form] : levels) {
        plug_in(R"({"clock_ms": 77, )" + scene.substr(1));
        write("/tmp/debug_level", level);
        run_ap("Net", 0, 0, "");
        const std::string command = "hostapd " + form + " /tmp/hostapd.conf -P /tmp/hostapd.pid";
        EXPECT_EQ(said(), lines{"system " + command}) << level;
        EXPECT_EQ(read("/dev/console"), traced ? "\033[1;34m77 " + command + "\033[0m\n" : "");
    }
}

TEST_F(realtek_modes, interface_is_brought_up_with_patience) {
    const lines raised = {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up", "wlan0 SIOCGIFFLAGS"};
    const lines refused = {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up = EBUSY"};
    const lines unseen = {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up", "wlan0 SIOCGIFFLAGS = EBUSY"};
    const lines pause = {"- sleep 1 s"};
    const std::string unknown = "network_nic_ifc_up[525] SIOCGIFFLAGS: No such device\n";
    const std::string busy = "network_nic_ifc_up[533] SIOCSIFFLAGS: Device or resource busy\n";
    const std::string lost = "network_nic_ifc_up[543] SIOCGIFFLAGS: Device or resource busy\n";
    const std::string timeout = "network_nic_ifc_up[559] Timeout\n";
    const std::tuple<const char*, int, std::string, outcome, lines> tries[] = {
        {"wlan0", 0, "", {0, "", ""}, raised},
        {"", 3, "", {-1, "network_nic_ifc_up[512] invilad devname\n", ""}, {}},
        {"wlan7", 3, "", {-1, "", unknown}, {"wlan7 SIOCGIFFLAGS = ENODEV"}},
        {"wlan0_and_much_more", 3, "", {-1, "", unknown}, {}},
        {"wlan0", 3, R"("socket")", {-1, "", "network_nic_ifc_up[516] socket: Device or resource busy\n"}, {}},
        {"wlan0", 0, R"("ioctl", "match": "SIOCSIFFLAGS")", {-1, timeout, busy}, refused},
        {"wlan0", 2, R"("ioctl", "match": "SIOCSIFFLAGS")", {0, "", busy}, refused + pause + raised},
        {"wlan0", 1, R"("ioctl", "match": "SIOCSIFFLAGS", "times": 0)", {-1, timeout, busy}, refused + pause},
        {"wlan0", 3, R"("ioctl", "match": "SIOCGIFFLAGS", "nth": 2)", {-1, "", lost}, unseen},
    };
    for (const auto& [interface, retries, fault, answer, requests] : tries) {
        const std::string faults = fault.empty() ? "" : R"({"errno": "EBUSY", "call": )" + fault + "}";
        plug_in(R"({"adapter": "realtek", "interfaces": {"wlan0": {"state": "down"}}, "faults": [)" + faults + "]}");
        const auto raise = [name = interface, tries_left = retries] {
            return wext().network_nic_ifc_up(stdout, name, tries_left);
        };
        EXPECT_EQ(watch(raise), answer) << interface << fault;
        EXPECT_EQ(said(), requests);
    }
}

} // namespace
