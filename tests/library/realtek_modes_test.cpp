// SPDX-License-Identifier: MIT
// The daemons of a Realtek adapter: their configuration files, and how they are started and replaced.

#include "tests/support/camera_test.h"

#include <cerrno>

#include <fcntl.h>

#include "libwlan/libwlan.h"

namespace {

const scene camera = scene("realtek").key("best_channel", 11).stored(stored_settings().system("Eye 3", "ACME"));

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
    const struct {
        const char* name;
        std::string ssid;
        int auth;
        std::string key;
        std::string network; // in the file
    } rows[] = {
        {"open", "Net", 0, "ignored key", "\tssid=\"Net\"\n\tkey_mgmt=NONE\n}\n"},
        {"WPA", "Net", 2, "passphrase", "\tssid=\"Net\"\n" + wpa + "\"passphrase\"\n}\n"},
        {"WPA2", "a \"b\"", 5, passphrase, "\tssid=\"a \"b\"\"\n" + rsn + "\"" + passphrase + "\"\n}\n"},
        {"raw key", "Net", 5, raw_key, "\tssid=\"Net\"\n" + rsn + raw_key + "\n}\n"},
        {"name cut", std::string(130, 's'), 0, "", "\tssid=\"" + std::string(121, 's') + "\n\tkey_mgmt=NONE\n}\n"},
        {"key cut", "Net", 2, std::string(130, 'k'), "\tssid=\"Net\"\n" + wpa + "\"" + std::string(121, 'k') + "\n}\n"},
    };
    for (const auto& row : rows) {
        for (const int enc : {0, 3, 255}) { // which the daemon negotiates
            SCOPED_TRACE(print("%s, cipher %d", row.name, enc));
            plug_in(camera);
            const outcome run = run_station(row.ssid, row.auth, row.key, enc);
            EXPECT_EQ(run.result, 0);
            EXPECT_EQ(run.err.find("Unknow authentication mode"), std::string::npos); // the daemon's own stand there
            EXPECT_EQ(run.opened, 1);                                                 // a quiet console
            EXPECT_EQ(read("/tmp/wpa_supplicant.conf"), supplicant_head + row.network);
            EXPECT_EQ(said().back().rfind(start_supplicant, 0), 0U);
        }
    }
}

TEST_F(realtek_modes, station_s_unknown_auth_is_refused) {
    for (const int auth : {1, 3, 4, 6, 7, 8, 255}) {
        SCOPED_TRACE(auth);
        plug_in(camera);
        const outcome run = run_station("Net", auth, "passphrase");
        EXPECT_EQ(run.result, -1);
        EXPECT_EQ(run.err.rfind("Unknow authentication mode of Wireless settings.", 0), 0U);
        EXPECT_EQ(run.opened, 2); // a quiet console, the socket of a failed request
        EXPECT_EQ(read("/tmp/wpa_supplicant.conf"), supplicant_head + "\tssid=\"Net\"\n"); // not finished
        EXPECT_EQ(said().back().rfind(start_supplicant, 0), 0U);                           // started all the same

        const auto write_file = [&] {
            return wext().create_wpa_supplicant_config(text(net), static_cast<auth_from_cam>(auth), ENC_NONE, nullptr);
        };
        EXPECT_EQ(watch(write_file), (outcome{-1, "", "Unknow authentication mode of Wireless settings."}));
    }
}

std::string secured(const std::string& wpa, const std::string& pairwise, const std::string& key = "passphrase") {
    return "wpa=" + wpa + "\n" + pairwise + "\nwpa_passphrase=" + key +
           "\nwpa_key_mgmt=WPA-PSK\nwpa_group_rekey=86400\n";
}

TEST_F(realtek_modes, access_point_file_says_how_to_serve) {
    const struct {
        int auth, enc;
        std::string security; // in the file
    } rows[] = {
        {0, 3, ""},
        {1, 3, ""},
        {3, 3, ""},
        {255, 3, ""},
        {2, 2, secured("1", "wpa_pairwise=TKIP")},
        {2, 3, secured("1", "wpa_pairwise=CCMP")},
        {2, 0, secured("1", "wpa_pairwise=TKIP CCMP")},
        {5, 2, secured("2", "rsn_pairwise=TKIP")},
        {5, 3, secured("2", "rsn_pairwise=CCMP")},
        {5, 255, secured("2", "rsn_pairwise=TKIP CCMP")},
        {7, 3, secured("3", "wpa_pairwise=CCMP")},
        {7, 4, secured("3", "wpa_pairwise=TKIP CCMP")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(print("auth %d, cipher %d", row.auth, row.enc));
        plug_in(camera);
        EXPECT_EQ(run_ap("Net", row.auth, row.enc, "passphrase"),
                  (outcome{0, "get_best_channel[245] get_best_channel=11\n", "", 1}));
        EXPECT_EQ(read("/tmp/hostapd.conf"), hostapd_file("ssid=Net\n", row.security));
        EXPECT_EQ(said(), lines{start_hostapd});
    }
}

TEST_F(realtek_modes, cut_name_loses_its_line_feed_a_key_not) {
    plug_in(camera);
    EXPECT_EQ(run_ap(std::string(130, 's'), 5, 3, std::string(130, 'k')).result, 0);
    EXPECT_EQ(read("/tmp/hostapd.conf"),
              hostapd_file("ssid=" + std::string(122, 's'), secured("2", "rsn_pairwise=CCMP", std::string(112, 'k'))));
}

TEST_F(realtek_modes, channel_is_the_first_driver_s_advice) {
    const struct {
        const char* name;
        const char* driver;
        const char* file;
        int channel;
    } rows[] = {
        {"first line of the band", "rtl8188eu", "best_channel_5G = 36\nbest_channel_24G = 11\nbest_channel_24G = 6\n",
         11},
        {"no line of the band", "rtl8188eu", "nothing to recommend\n", 1},
        {"ends where its value should begin", "rtl8188eu", "best_channel_24G=6\n", 0},
        {"ends before its value", "rtl8188eu", "best_channel_24G=6", 1},
        {"another driver", "rtl8192eu", "best_channel_24G = 11\n", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(scene("realtek").stored(stored_settings().system("Eye 3", "ACME")));
        write(print("/proc/net/%s/wlan1/best_channel", row.driver), row.file);
        int channel = 1;
        EXPECT_EQ(watch([&] { return get_best_channel(&channel); }).result, row.channel);
        EXPECT_EQ(run_ap("Net", 0, 0, "").result, 0);
        EXPECT_EQ(read("/tmp/hostapd.conf"), hostapd_file("ssid=Net\n", "", row.channel));
    }
    EXPECT_EQ(get_best_channel(nullptr), 1);
}

TEST_F(realtek_modes, requests_replace_earlier_daemons) {
    plug_in(camera);
    run_ap("Net", 5, 3, "passphrase");
    run_station("Net", 5, "passphrase");
    let_daemons_start();
    const std::string hostapd = read("/tmp/hostapd.pid").substr(0, 7);
    const std::string supplicant = read("/tmp/wpa_supplicant.pid").substr(0, 7);
    EXPECT_EQ(run_repeater().result, 0);
    EXPECT_EQ(said(10), (lines{supplicant + " kill 15", supplicant + " kill 0", "- sleep 1 s",
                               supplicant + " kill 0 = ESRCH", hostapd + " kill 15", hostapd + " kill 0", "- sleep 1 s",
                               hostapd + " kill 0 = ESRCH", start_hostapd, start_supplicant}));
}

TEST_F(realtek_modes, failed_access_point_keeps_from_joining) {
    plug_in(scene("realtek")); // a store without its file
    EXPECT_EQ(run_repeater().result, -1);
    EXPECT_FALSE(exists("/tmp/hostapd.conf"));
    EXPECT_EQ(said(), lines{std::string(start_hostapd) + " = 1"}); // with whatever file there was
}

TEST_F(realtek_modes, repeater_fails_with_its_station) {
    plug_in(camera);
    const auto repeat = [] {
        return do_repeater_mode_realtek(text(net), AUTH_OPEN, ENC_NONE, nullptr, text(net), AUTH_SHARED, ENC_WEP,
                                        text(secret));
    };
    EXPECT_EQ(watch(repeat).result, -1);
    EXPECT_TRUE(exists("/tmp/hostapd.conf")); // the access point serves all the same
}

TEST_F(realtek_modes, bad_texts_write_no_file) {
    plug_in(camera);
    const std::string two_lines = "x\nwpa=0";
    wext radio;
    EXPECT_EQ(radio.create_hostapd_config(nullptr, AUTH_OPEN, ENC_NONE, nullptr), -1);
    EXPECT_EQ(radio.create_hostapd_config(text(net), AUTH_WPA2PSK, ENC_AES, nullptr), -1);
    EXPECT_EQ(radio.create_hostapd_config(text(two_lines), AUTH_OPEN, ENC_NONE, nullptr), -1);
    EXPECT_FALSE(exists("/tmp/hostapd.conf"));
    EXPECT_EQ(radio.create_wpa_supplicant_config(nullptr, AUTH_OPEN, ENC_AES, nullptr), -1);
    EXPECT_EQ(radio.create_wpa_supplicant_config(text(net), AUTH_WPAPSK, ENC_AES, text(two_lines)), -1);
    EXPECT_FALSE(exists("/tmp/wpa_supplicant.conf"));
}

TEST_F(realtek_modes, file_that_cannot_be_made_is_a_failure) {
    const struct {
        const char* name;
        scene camera;
    } rows[] = {
        {"store without its file", scene("realtek")},
        {"read-only files",
         camera.fault("open", "EROFS").match("hostapd.conf").fault("open", "EROFS").match("wpa_supplicant.conf")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        wext radio;
        EXPECT_EQ(radio.create_hostapd_config(text(net), AUTH_OPEN, ENC_NONE, nullptr), -1);
        EXPECT_EQ(radio.create_wpa_supplicant_config(text(net), AUTH_OPEN, ENC_NONE, nullptr), -1);
        EXPECT_FALSE(exists("/tmp/hostapd.conf"));
        EXPECT_FALSE(exists("/tmp/wpa_supplicant.conf"));
    }
}

TEST_F(realtek_modes, open_network_needs_no_key) {
    plug_in(camera);
    EXPECT_EQ(do_ap_mode_realtek(text(net), AUTH_OPEN, ENC_NONE, nullptr), 0);
    EXPECT_EQ(do_infra_mode_realtek(text(net), AUTH_OPEN, ENC_NONE, nullptr), 0);
}

TEST_F(realtek_modes, debug_level_traces_and_its_bit_2_waits) {
    const struct {
        std::string level;
        bool traced;
        const char* form; // of the command: in the background, or not
    } rows[] = {
        {"0", false, "-B"},
        {"1", true, "-B"},
        {"2", true, "-d"},
        {"6", true, "-d"},
        {"x", false, "-B"},
        {std::string(62, ' ') + "1", true, "-B"}, // 63 characters are read
        {std::string(63, ' ') + "1", false, "-B"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.level);
        plug_in(camera.key("clock_ms", 77));
        write("/tmp/debug_level", row.level);
        EXPECT_EQ(run_ap("Net", 0, 0, "").opened, row.traced ? 0 : 1); // a quiet console stays open
        const std::string command = print("hostapd %s /tmp/hostapd.conf -P /tmp/hostapd.pid", row.form);
        EXPECT_EQ(said(), lines{"system " + command});
        EXPECT_EQ(read("/dev/console"), row.traced ? "\033[1;34m77 " + command + "\033[0m\n" : "");
    }
}

TEST_F(realtek_modes, debug_level_2_waits_for_a_station_too) {
    plug_in(camera);
    write("/tmp/debug_level", "2");
    run_station("Net", 0, "");
    EXPECT_EQ(said().back().rfind("system wpa_supplicant -d -c /tmp/wpa_supplicant.conf -i wlan0 -P", 0), 0U);
}

TEST_F(realtek_modes, interface_is_brought_up_with_patience) {
    const lines raised = {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up", "wlan0 SIOCGIFFLAGS"};
    const lines refused = {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up = EBUSY"};
    const lines unseen = {"wlan0 SIOCGIFFLAGS", "wlan0 SIOCSIFFLAGS up", "wlan0 SIOCGIFFLAGS = EBUSY"};
    const lines pause = {"- sleep 1 s"};
    const std::string no_name = "network_nic_ifc_up[512] invilad devname\n";
    const std::string no_socket = "network_nic_ifc_up[516] socket: Device or resource busy\n";
    const std::string unknown = "network_nic_ifc_up[525] SIOCGIFFLAGS: No such device\n";
    const std::string busy = "network_nic_ifc_up[533] SIOCSIFFLAGS: Device or resource busy\n";
    const std::string lost = "network_nic_ifc_up[543] SIOCGIFFLAGS: Device or resource busy\n";
    const std::string timeout = "network_nic_ifc_up[559] Timeout\n";
    const scene down = scene("realtek").interface_down("wlan0");
    const scene busy_once = down.fault("ioctl", "EBUSY").match("SIOCSIFFLAGS");
    const struct {
        const char* name;
        scene camera;
        const char* interface;
        int retries;
        outcome answer;
        lines said;
    } rows[] = {
        {"at once", down, "wlan0", 0, {0, "", ""}, raised},
        {"empty name", down, "", 3, {-1, no_name, ""}, {}},
        {"unknown name", down, "wlan7", 3, {-1, "", unknown}, {"wlan7 SIOCGIFFLAGS = ENODEV"}},
        {"name of 16 bytes", down, "name_of_16_bytes", 3, {-1, "", unknown}, {}},
        {"overlong name", down, "wlan0_and_much_more", 3, {-1, "", unknown}, {}},
        {"no socket", down.fault("socket", "EBUSY"), "wlan0", 3, {-1, "", no_socket}, {}},
        {"no second try", busy_once, "wlan0", 0, {-1, timeout, busy}, refused},
        {"a second try", busy_once, "wlan0", 2, {0, "", busy}, refused + pause + raised},
        {"never", busy_once.times(0), "wlan0", 1, {-1, timeout, busy}, refused + pause},
        {"lost again", down.fault("ioctl", "EBUSY").match("SIOCGIFFLAGS").nth(2), "wlan0", 3, {-1, "", lost}, unseen},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        errno = 0; // a message is not to tell an earlier row's
        EXPECT_EQ(watch([&] { return wext().network_nic_ifc_up(stdout, row.interface, row.retries); }), row.answer);
        EXPECT_EQ(said(), row.said);
    }
}

TEST_F(realtek_modes, init_without_a_socket_says_so) {
    plug_in(camera.fault("socket", "EMFILE"));
    wext radio;
    EXPECT_EQ(watch([&] { return radio.init(true); }), (outcome{-1, "", "iw_socket: Too many open files\n"}));
}

TEST_F(realtek_modes, init_forgets_an_earlier_debug_level) {
    plug_in(camera);
    wext radio;
    radio.debug_level = 2;
    ASSERT_EQ(radio.init(false), 0);
    EXPECT_EQ(radio.debug_level, 0);
    radio.release();
}

TEST_F(realtek_modes, release_never_closes_descriptor_0) {
    wext radio;
    radio.sock = 0;
    EXPECT_EQ(radio.release(), 0);
    EXPECT_EQ(radio.sock, -1);
    EXPECT_NE(fcntl(0, F_GETFD), -1);
}

} // namespace
