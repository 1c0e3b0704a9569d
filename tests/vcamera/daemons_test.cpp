// SPDX-License-Identifier: MIT
// The camera's daemons as processes: when their pid files come and go, who else they let run, what the
// radio does meanwhile. Calls of this test are intercepted like the library's.

#include "tests/support/camera_test.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h> // before the kernel's, which makes way for it
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/wireless.h>

#include "libwlan/libwlan.h"

namespace {

const char* const start_hostapd = "hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid";
const char* const start_supplicant =
    "wpa_supplicant -B -c /tmp/wpa_supplicant.conf -i wlan0 -P /tmp/wpa_supplicant.pid";

constexpr useconds_t pid_file_time = 5000;
constexpr useconds_t end_time = 100000;
constexpr useconds_t scan_time = 3750000;
constexpr useconds_t pause_time = 5000000; // between two scans

/// @return the errno of a Wireless Extensions request about the station, 0 for none.
int ask(unsigned long code, iwreq& request) {
    std::strcpy(request.ifr_name, "wlan0");
    const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
    const int error = ioctl(socket, code, &request) == 0 ? 0 : errno;
    close(socket);
    return error;
}
int ask(unsigned long code) {
    iwreq request{};
    return ask(code, request);
}

class daemons : public camera_test {
protected:
    void plug_in_with_files(const scene& camera) {
        plug_in(camera);
        write("/tmp/hostapd.conf", "interface=wlan1\nssid=Camera\n");
        write("/tmp/wpa_supplicant.conf", "network={\nssid=\"Office\"\nkey_mgmt=WPA-PSK\npsk=\"office-key\"\n}\n");
    }

    /// Runs a command.
    /// @return its exit status, and what it said.
    static outcome run(const char* command) {
        return watch([&] { return WEXITSTATUS(std::system(command)); });
    }

    [[nodiscard]] int pid(const std::string& daemon) const {
        return std::atoi(read("/tmp/" + daemon + ".pid").c_str());
    }
};

TEST_F(daemons, pid_file_comes_after_the_start) {
    plug_in_with_files(scene("realtek"));
    EXPECT_EQ(run(start_hostapd).result, 0);
    usleep(pid_file_time - 1);
    EXPECT_FALSE(exists("/tmp/hostapd.pid"));
    usleep(1);
    EXPECT_TRUE(exists("/tmp/hostapd.pid"));
}

TEST_F(daemons, signalled_daemon_takes_a_moment_to_end) {
    plug_in_with_files(scene("realtek"));
    run(start_hostapd);
    let_daemons_start();
    const int process = pid("hostapd");
    EXPECT_EQ(kill(process, SIGTERM), 0);
    usleep(end_time - 1);
    EXPECT_EQ(kill(process, 0), 0);
    EXPECT_TRUE(exists("/tmp/hostapd.pid"));
    usleep(1);
    EXPECT_EQ(kill(process, 0), -1);
    EXPECT_FALSE(exists("/tmp/hostapd.pid")); // it has removed it itself
}

TEST_F(daemons, killed_daemon_leaves_its_pid_file) {
    plug_in_with_files(scene("realtek"));
    run(start_hostapd);
    let_daemons_start();
    const int process = pid("hostapd");
    EXPECT_EQ(kill(process, SIGKILL), 0);
    EXPECT_EQ(kill(process, 0), -1);
    EXPECT_TRUE(exists("/tmp/hostapd.pid"));
}

TEST_F(daemons, stop_at_the_same_instant_misses_them) {
    plug_in(scene("realtek").stored(stored_settings()
                                        .access_point("Camera", "open", "none")
                                        .dhcp_server("192.168.8.1")
                                        .system("Camera", "Example")));
    EXPECT_EQ(watch(run_ap_mode_base_db).result, 0);
    EXPECT_EQ(watch(run_stop_ap_mode).result, 0);
    let_daemons_start();
    EXPECT_EQ(kill(pid("hostapd"), 0), 0);
    EXPECT_EQ(kill(pid("udhcpd"), 0), 0);
    EXPECT_EQ(watch(run_stop_ap_mode).result, 0); // a later one finds them
    EXPECT_FALSE(exists("/tmp/hostapd.pid"));
    EXPECT_FALSE(exists("/tmp/udhcpd.pid"));
}

TEST_F(daemons, one_at_a_time_has_the_interface) {
    plug_in_with_files(scene("realtek"));
    EXPECT_EQ(run(start_hostapd).result, 0);
    const outcome second = run(start_hostapd);
    EXPECT_EQ(second.result, 1);
    EXPECT_EQ(second.err.rfind("nl80211: kernel reports: Match already configured\n", 0), 0U);
    EXPECT_EQ(run(start_supplicant).result, 0);
    const outcome third = run(start_supplicant);
    EXPECT_EQ(third.result, 255);
    EXPECT_EQ(third.err, "ctrl_iface exists and seems to be in use - cannot override it\n");
}

TEST_F(daemons, interface_is_left_as_it_was) {
    for (const bool up : {false, true}) {
        SCOPED_TRACE(up);
        plug_in_with_files(up ? scene("realtek") : scene("realtek").interface_down("wlan1"));
        run(start_hostapd);
        EXPECT_EQ(does_ifup("wlan1"), 1);
        let_daemons_start();
        kill(pid("hostapd"), SIGTERM);
        sleep(1);
        EXPECT_EQ(does_ifup("wlan1"), up ? 1 : 0);
    }
}

TEST_F(daemons, refused_file_is_told_as_the_real_ones_do) {
    const struct {
        const char* command;
        const char* file;
        const char* text;
        outcome answer;
    } rows[] = {
        {start_hostapd,
         "/tmp/hostapd.conf",
         "interface=wlan1\nhw_mode=n\n",
         {1, "",
          "Line 2: unknown hw_mode 'n'\n1 errors found in configuration file '/tmp/hostapd.conf'\n"
          "Failed to set up interface with /tmp/hostapd.conf\nFailed to initialize interface\n"}},
        {start_supplicant,
         "/tmp/wpa_supplicant.conf",
         "colour=blue\n",
         {255, "Successfully initialized wpa_supplicant\n",
          "Line 1: unknown global field 'colour=blue'.\nLine 1: Invalid configuration line 'colour=blue'.\n"
          "Failed to read or parse configuration '/tmp/wpa_supplicant.conf'.\n"}},
        {"udhcpd -f",
         "/tmp/udhcpd.conf",
         "interface wlan1\nopt mtu x\nopt netmask 1\n",
         {1, "", "udhcpd: can't parse line 2 in /tmp/udhcpd.conf\nudhcpd: unknown option 'netmask', known options: "}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command);
        plug_in(scene("realtek"));
        write(row.file, row.text);
        const outcome said = run(row.command);
        EXPECT_EQ(said.result, row.answer.result);
        EXPECT_EQ(said.out, row.answer.out);
        EXPECT_EQ(said.err.substr(0, row.answer.err.size()), row.answer.err);
        let_daemons_start();
        EXPECT_FALSE(exists("/tmp/hostapd.pid"));
        EXPECT_FALSE(exists("/tmp/wpa_supplicant.pid"));
    }
}

TEST_F(daemons, udhcpd_in_the_background_dies_silently) {
    for (const char* file : {"interface wlan7\n", "interface wlan1\nopt netmask 1\n"}) {
        SCOPED_TRACE(file);
        plug_in(scene("realtek"));
        write("/tmp/udhcpd.conf", file);
        EXPECT_EQ(run("udhcpd"), (outcome{0, "", ""}));
        let_daemons_start();
        EXPECT_FALSE(exists("/tmp/udhcpd.pid"));
    }
}

TEST_F(daemons, hostapd_of_the_scene_judges_the_library_s_file) {
    const struct {
        const char* hostapd;
        int channel; // that the driver recommends
        bool comes_up;
    } rows[] = {{"adapter", 11, true}, {"stock", 6, false}, {"wrapped", 6, true}, {"wrapped", 11, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(print("%s %d", row.hostapd, row.channel));
        plug_in(scene("realtek")
                    .key("hostapd", row.hostapd)
                    .key("best_channel", row.channel)
                    .stored(stored_settings().system("Camera", "Example")));
        watch([] { return run_ap_mode(text("Camera"), AUTH_WPA2PSK, ENC_AES, text("camera-key")); });
        let_daemons_start();
        EXPECT_EQ(exists("/tmp/hostapd.pid"), row.comes_up);
    }
}

TEST_F(daemons, station_joins_when_a_scan_is_through) {
    plug_in_with_files(scene("realtek").air(access_point("Office").channel(6).wpa2("office-key")));
    run(start_supplicant);
    usleep(scan_time - 1);
    EXPECT_EQ(does_wifi_associated("wlan0"), 0);
    EXPECT_EQ(ask(SIOCSIWSCAN), EBUSY);
    usleep(1);
    EXPECT_EQ(does_wifi_associated("wlan0"), 1);
    EXPECT_EQ(ask(SIOCSIWSCAN), 0);
    kill(pid("wpa_supplicant"), SIGTERM);
    sleep(1);
    EXPECT_EQ(does_wifi_associated("wlan0"), 0);
}

TEST_F(daemons, search_for_nobody_goes_on_with_pauses) {
    plug_in_with_files(scene("realtek").air(access_point("Office").channel(6).wpa2("another-key")));
    run(start_supplicant);
    for (int scan = 0; scan < 3; ++scan) {
        EXPECT_EQ(ask(SIOCSIWSCAN), EBUSY) << scan;
        usleep(scan_time);
        EXPECT_EQ(ask(SIOCSIWSCAN), 0) << scan;
        usleep(pause_time);
    }
    kill(pid("wpa_supplicant"), SIGTERM);
    sleep(1);
    EXPECT_EQ(ask(SIOCSIWSCAN), 0);
    EXPECT_EQ(does_wifi_associated("wlan0"), 0);
}

TEST_F(daemons, channel_comes_in_the_scene_s_form) {
    const struct {
        const char* form;
        int unjoined; // errno
        int mantissa, exponent;
        int surveyed; // what the library makes of the scan
    } rows[] = {{"kernel", EINVAL, 2437, 6, 6}, {"channel", 0, 6, 0, -481}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.form);
        plug_in_with_files(
            scene("realtek").key("frequencies", row.form).air(access_point("Office").channel(6).wpa2("office-key")));
        EXPECT_EQ(ask(SIOCGIWFREQ), row.unjoined);
        run(start_supplicant);
        usleep(scan_time);
        iwreq request{};
        EXPECT_EQ(ask(SIOCGIWFREQ, request), 0);
        EXPECT_EQ(request.u.freq.m, row.mantissa);
        EXPECT_EQ(request.u.freq.e, row.exponent);
        std::vector<sites> list;
        EXPECT_EQ(watch([&] { return run_site_survey(list); }).result, 0);
        ASSERT_EQ(list.size(), 1U);
        EXPECT_EQ(list[0].channel, row.surveyed);
    }
}

const std::string long_name = "Meeting room, second floor, left"; // of 32 bytes

/// What a station tells of the network that it is joined to: "name on MHz or channel, level, address".
std::string told_network() {
    char name[IW_ESSID_MAX_SIZE + 1] = "";
    iwreq request{};
    request.u.essid = {name, sizeof name, 0};
    if (ask(SIOCGIWESSID, request) != 0 || request.u.essid.length == 0)
        return "none";
    std::string told(name, request.u.essid.length);
    ask(SIOCGIWFREQ, request);
    told += print(" on %d", request.u.freq.m);
    iw_statistics figures{};
    request.u.data = {&figures, sizeof figures, 1};
    if (ask(SIOCGIWSTATS, request) == 0)
        told += print(", %d dBm", static_cast<signed char>(figures.qual.level));
    ifaddrs* list = nullptr;
    getifaddrs(&list);
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr != nullptr && entry->ifa_name == std::string("wlan0"))
            told += std::string(", ") + inet_ntoa(reinterpret_cast<sockaddr_in*>(entry->ifa_addr)->sin_addr);
    }
    freeifaddrs(list);
    return told;
}

class joined : public daemons {
protected:
    static void join(const std::string& ssid) {
        watch([&] {
            return run_infra_mode(text(ssid), text("00:00:00:00:00:00"), AUTH_WPA2PSK, ENC_AES, text("office-key"), 6,
                                  1);
        });
        usleep(10000000);
    }
};

TEST_F(joined, station_tells_its_network_and_address) {
    const struct {
        const char* adapter;
        const char* told;
    } rows[] = {{"mediatek", " on 6, -48 dBm"}, {"realtek", " on 2437, -48 dBm"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.adapter);
        const access_point point = access_point(long_name).channel(6).level(-48).wpa2("office-key");
        plug_in(scene(row.adapter)
                    .air(point.key("vanishes_after_ms", 60000))
                    .key("addresses", {{"wlan0", {{"address", "192.168.8.20"}, {"after_ms", 20000}}}})
                    .stored(stored_settings().system("Camera", "Example")));
        EXPECT_EQ(told_network(), "none");
        join(long_name);
        EXPECT_EQ(told_network(), long_name + row.told);
        sleep(20);
        EXPECT_EQ(told_network(), long_name + row.told + ", 192.168.8.20");
        watch([] { return std::system("ifconfig wlan0 10.0.0.2"); });
        EXPECT_EQ(told_network(), long_name + row.told + ", 10.0.0.2");
        sleep(60); // it has vanished
        EXPECT_EQ(told_network(), "none");
        std::vector<sites> list;
        watch([&] { return run_site_survey(list); });
        EXPECT_EQ(list.size(), 0U);
    }
}

TEST_F(joined, network_that_refuses_is_not_joined) {
    for (const char* adapter : {"mediatek", "realtek"}) {
        SCOPED_TRACE(adapter);
        plug_in(scene(adapter)
                    .air(access_point("Office").channel(6).wpa2("office-key").key("rejects", 17))
                    .stored(stored_settings().system("Camera", "Example")));
        join("Office");
        EXPECT_EQ(told_network(), "none");
    }
}

} // namespace
