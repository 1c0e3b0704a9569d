#include "tests/camera_test.h"

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

class realtek_modes : public camera_test {
protected:
    outcome run_ap(std::string ssid, int auth, int enc, std::string key) {
        return watch([&] {
            return do_ap_mode_realtek(ssid.data(), static_cast<auth_from_cam>(auth), static_cast<enc_from_cam>(enc),
                                      key.data());
        });
    }
    outcome run_station(std::string ssid, int auth, std::string key, int enc = 0) {
        return watch([&] {
            return do_infra_mode_realtek(ssid.data(), static_cast<auth_from_cam>(auth), static_cast<enc_from_cam>(enc),
                                         key.data());
        });
    }
};

TEST_F(realtek_modes, station_file_says_how_to_join) {
    const std::string raw_key(64, 'a');
    const std::string passphrase(63, 'a');
    const struct {
        std::string ssid;
        int auth;
        std::string key;
        std::string rest;
    } files[] = {
        {"Net", 0, "ignored key", "\tssid=\"Net\"\n\tkey_mgmt=NONE\n}\n"},
        {"Net", 2, "passphrase", "\tssid=\"Net\"\n\tkey_mgmt=WPA-PSK\n\tproto=WPA\n\tpsk=\"passphrase\"\n}\n"},
        {"a \"b\"", 5, passphrase,
         "\tssid=\"a \"b\"\"\n\tkey_mgmt=WPA-PSK\n\tproto=RSN\n\tpsk=\"" + passphrase + "\"\n}\n"},
        {"Net", 5, raw_key, "\tssid=\"Net\"\n\tkey_mgmt=WPA-PSK\n\tproto=RSN\n\tpsk=" + raw_key + "\n}\n"},
        {std::string(130, 's'), 0, "", "\tssid=\"" + std::string(121, 's') + "\n\tkey_mgmt=NONE\n}\n"},
        {"Net", 2, std::string(130, 'k'),
         "\tssid=\"Net\"\n\tkey_mgmt=WPA-PSK\n\tproto=WPA\n\tpsk=\"" + std::string(121, 'k') + "\n}\n"},
    };
    for (const auto& file : files)
        for (const int enc : {0, 3, 255}) {
            SCOPED_TRACE(file.rest);
            plug_in(scene);
            EXPECT_EQ(run_station(file.ssid, file.auth, file.key, enc).result, 0);
            EXPECT_EQ(read("/tmp/wpa_supplicant.conf"), supplicant_head + file.rest);
            EXPECT_EQ(said().back().rfind(start_supplicant, 0), 0U);
        }
}

TEST_F(realtek_modes, station_refuses_what_the_daemon_cannot_do) {
    for (const int auth : {1, 3, 4, 6, 7, 8, 255}) {
        SCOPED_TRACE(auth);
        plug_in(scene);
        const int before = open_descriptors();
        const outcome run = run_station("Net", auth, "passphrase");
        EXPECT_EQ(run.result, -1);
        EXPECT_EQ(run.err.substr(0, 48), "Unknow authentication mode of Wireless settings.");
        EXPECT_EQ(read("/tmp/wpa_supplicant.conf"), supplicant_head + "\tssid=\"Net\"\n");
        EXPECT_EQ(said().back(), std::string(start_supplicant) + " = 1"); // started all the same
        EXPECT_EQ(open_descriptors(),
                  before + 2); // the socket of a failed request, a quiet console
    }
}

TEST_F(realtek_modes, access_point_file_says_how_to_serve) {
    auto secured = [](const std::string& wpa, const std::string& pairwise, const std::string& key) {
        return "wpa=" + wpa + "\n" + pairwise + "\nwpa_passphrase=" + key +
               "\nwpa_key_mgmt=WPA-PSK\nwpa_group_rekey=86400\n";
    };
    const struct {
        int auth;
        int enc;
        std::string security;
    } files[] = {
        {0, 3, ""},
        {1, 1, ""},
        {3, 3, ""},
        {255, 3, ""},
        {2, 2, secured("1", "wpa_pairwise=TKIP", "passphrase")},
        {2, 3, secured("1", "wpa_pairwise=CCMP", "passphrase")},
        {2, 0, secured("1", "wpa_pairwise=TKIP CCMP", "passphrase")},
        {5, 2, secured("2", "rsn_pairwise=TKIP", "passphrase")},
        {5, 3, secured("2", "rsn_pairwise=CCMP", "passphrase")},
        {5, 255, secured("2", "rsn_pairwise=TKIP CCMP", "passphrase")},
        {7, 3, secured("3", "wpa_pairwise=CCMP", "passphrase")},
        {7, 4, secured("3", "wpa_pairwise=TKIP CCMP", "passphrase")},
    };
    for (const auto& file : files) {
        SCOPED_TRACE(testing::Message() << file.auth << ' ' << file.enc);
        plug_in(scene);
        const outcome run = run_ap("Net", file.auth, file.enc, "passphrase");
        EXPECT_EQ(run.result, 0);
        EXPECT_EQ(run.out, "get_best_channel[245] get_best_channel=11\n");
        EXPECT_EQ(read("/tmp/hostapd.conf"), hostapd_file("ssid=Net\n", file.security));
        EXPECT_EQ(said(), lines{start_hostapd});
    }
    plug_in(scene); // a cut name takes its line feed along, a cut key does not
    run_ap(std::string(130, 's'), 5, 3, std::string(130, 'k'));
    EXPECT_EQ(read("/tmp/hostapd.conf"),
              hostapd_file("ssid=" + std::string(122, 's'), secured("2", "rsn_pairwise=CCMP", std::string(112, 'k'))));
}

TEST_F(realtek_modes, channel_is_the_first_driver_s_recommendation) {
    const std::string first = "/proc/net/rtl8188eu/wlan1/best_channel";
    const struct {
        std::string path;
        std::string content;
        int channel;
    } recommendations[] = {
        {first, "best_channel_5G = 36\nbest_channel_24G = 11\nbest_channel_24G = 6\n", 11},
        {first, "nothing to recommend\n", 1},
        {first, "best_channel_24G=6\n", 1}, // ends before its value
        {"/proc/net/rtl8192eu/wlan1/best_channel", "best_channel_24G = 11\n", 1},
    };
    for (const auto& recommendation : recommendations) {
        SCOPED_TRACE(recommendation.content);
        plug_in(R"({"adapter": "realtek"})");
        std::remove((folder + first).c_str());
        write(recommendation.path, recommendation.content);
        int channel = 1;
        const outcome run = watch([&] { return get_best_channel(&channel); });
        EXPECT_EQ(run.result, recommendation.channel);
    }
    EXPECT_EQ(get_best_channel(nullptr), 1);
}

TEST_F(realtek_modes, requests_replace_the_daemons_of_earlier_ones) {
    plug_in(scene);
    run_ap("Net", 5, 3, "passphrase");
    run_station("Net", 5, "passphrase");
    const std::string hostapd = read("/tmp/hostapd.pid").substr(0, 7);
    const std::string supplicant = read("/tmp/wpa_supplicant.pid").substr(0, 7);
    std::string name = "Net";
    std::string key = "passphrase";
    EXPECT_EQ(do_repeater_mode_realtek(name.data(), AUTH_WPA2PSK, ENC_AES, key.data(), name.data(), AUTH_OPEN, ENC_NONE,
                                       key.data()),
              0);
    const lines all = said();
    const lines repeater(all.begin() + 2, all.end());
    EXPECT_EQ(repeater, (lines{supplicant + " kill 15", supplicant + " kill 0 = ESRCH", hostapd + " kill 15",
                               hostapd + " kill 0 = ESRCH", start_hostapd, start_supplicant}));
}

TEST_F(realtek_modes, failed_access_point_keeps_the_repeater_from_joining) {
    plug_in(R"({"adapter": "realtek"})"); // a store without its file
    std::string name = "Net";
    const outcome run = watch([&] {
        return do_repeater_mode_realtek(name.data(), AUTH_OPEN, ENC_NONE, nullptr, name.data(), AUTH_OPEN, ENC_NONE,
                                        nullptr);
    });
    EXPECT_EQ(run.result, -1);
    EXPECT_FALSE(exists("/tmp/hostapd.conf"));
    EXPECT_EQ(said(), lines{std::string(start_hostapd) + " = 1"}); // with whatever file there was
}

TEST_F(realtek_modes, bad_texts_write_no_file) {
    plug_in(scene);
    std::string name = "Net";
    std::string injected = "x\nwpa=0";
    EXPECT_EQ(do_ap_mode_realtek(nullptr, AUTH_OPEN, ENC_NONE, nullptr), -1);
    EXPECT_EQ(do_ap_mode_realtek(name.data(), AUTH_WPA2PSK, ENC_AES, nullptr), -1);
    EXPECT_EQ(do_ap_mode_realtek(injected.data(), AUTH_OPEN, ENC_NONE, nullptr), -1);
    EXPECT_EQ(do_infra_mode_realtek(name.data(), AUTH_WPAPSK, ENC_AES, injected.data()), -1);
    EXPECT_EQ(do_infra_mode_realtek(nullptr, AUTH_OPEN, ENC_AES, nullptr), -1);
    EXPECT_FALSE(exists("/tmp/hostapd.conf"));
    EXPECT_FALSE(exists("/tmp/wpa_supplicant.conf"));
    EXPECT_EQ(do_ap_mode_realtek(name.data(), AUTH_OPEN, ENC_NONE, nullptr), 0);
    EXPECT_EQ(do_infra_mode_realtek(name.data(), AUTH_OPEN, ENC_NONE, nullptr), 0);
}

TEST_F(realtek_modes, debug_level_traces_and_holds_the_daemon_in_the_foreground) {
    const struct {
        const char* level;
        bool traced;
        const char* form;
    } levels[] = {{"0", false, "-B"}, {"1", true, "-B"}, {"2", true, "-d"}, {"6", true, "-d"}, {"x", false, "-B"}};
    for (const auto& level : levels) {
        SCOPED_TRACE(level.level);
        plug_in(
            R"({"adapter": "realtek", "clock_ms": 77, "files": {"/etc/camera.conf": ["[system]", "model = M", "manufacturer = F"]}})");
        write("/tmp/debug_level", level.level);
        run_ap("Net", 0, 0, "");
        const std::string command = std::string("hostapd ") + level.form + " /tmp/hostapd.conf -P /tmp/hostapd.pid";
        EXPECT_EQ(said(), lines{"system " + command});
        EXPECT_EQ(read("/dev/console"), level.traced ? "\033[1;34m77 " + command + "\033[0m\n" : "");
    }
}

TEST_F(realtek_modes, interface_is_brought_up_with_patience) {
    const struct {
        const char* title;
        const char* interface;
        int retries;
        const char* faults;
        int result;
        const char* log;
        const char* err;
        lines said;
    } tries[] = {
        {"up", "wlan0", 0, "", 0, "", "", {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up", "wlan0 SIOCGIFFLAGS"}},
        {"no name", "", 3, "", -1, "network_nic_ifc_up[512] invilad devname\n", "", {}},
        {"no such interface",
         "wlan7",
         3,
         "",
         -1,
         "",
         "network_nic_ifc_up[525] SIOCGIFFLAGS: No such device\n",
         {"wlan7 SIOCGIFFLAGS = ENODEV"}},
        {"no interface has such a name",
         "wlan0_and_much_more",
         3,
         "",
         -1,
         "",
         "network_nic_ifc_up[525] SIOCGIFFLAGS: No such device\n",
         {}},
        {"no socket",
         "wlan0",
         3,
         R"({"call": "socket", "errno": "EMFILE"})",
         -1,
         "",
         "network_nic_ifc_up[516] socket: Too many open files\n",
         {}},
        {"refused once, one try",
         "wlan0",
         0,
         R"({"call": "ioctl", "match": "SIOCSIFFLAGS", "errno": "EBUSY"})",
         -1,
         "network_nic_ifc_up[559] Timeout\n",
         "network_nic_ifc_up[533] SIOCSIFFLAGS: Device or resource busy\n",
         {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up = EBUSY"}},
        {"refused once, two tries",
         "wlan0",
         2,
         R"({"call": "ioctl", "match": "SIOCSIFFLAGS", "errno": "EBUSY"})",
         0,
         "",
         "network_nic_ifc_up[533] SIOCSIFFLAGS: Device or resource busy\n",
         {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up = EBUSY", "- sleep 1 s", "wlan0 SIOCGIFFLAGS",
          "wlan0 SIOCSIFFLAGS up", "wlan0 SIOCGIFFLAGS"}},
        {"refused for good",
         "wlan0",
         1,
         R"({"call": "ioctl", "match": "SIOCSIFFLAGS", "errno": "EBUSY", "times": 0})",
         -1,
         "network_nic_ifc_up[559] Timeout\n",
         "network_nic_ifc_up[533] SIOCSIFFLAGS: Device or resource busy\n",
         {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up = EBUSY", "- sleep 1 s"}},
        {"lost after the write",
         "wlan0",
         3,
         R"({"call": "ioctl", "match": "SIOCGIFFLAGS", "nth": 2, "errno": "ENODEV"})",
         -1,
         "",
         "network_nic_ifc_up[543] SIOCGIFFLAGS: No such device\n",
         {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up", "wlan0 SIOCGIFFLAGS = ENODEV"}},
    };
    for (const auto& attempt : tries) {
        SCOPED_TRACE(attempt.title);
        plug_in(R"({"adapter": "realtek", "interfaces": {"wlan0": {"state": "down"}}, "faults": [)" +
                std::string(attempt.faults) + "]}");
        const int before = open_descriptors();
        char* log_text = nullptr;
        std::size_t log_size = 0;
        FILE* log = open_memstream(&log_text, &log_size);
        const outcome run = watch([&] {
            wext radio;
            return radio.network_nic_ifc_up(log, attempt.interface, attempt.retries);
        });
        std::fclose(log);
        EXPECT_EQ(run.result, attempt.result);
        EXPECT_STREQ(log_text, attempt.log);
        EXPECT_EQ(run.err, attempt.err);
        EXPECT_EQ(said(), attempt.said);
        EXPECT_EQ(open_descriptors(), before);
        std::free(log_text);
    }
}

} // namespace
