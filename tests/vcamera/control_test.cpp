// SPDX-License-Identifier: MIT
// The daemons' control sockets, as programs with Debian's library for them find them. Calls of this
// test are intercepted like the library's.

#include <cerrno>
#include <csignal>
#include <ctime>
#include <memory>

#include <poll.h>
#include <sys/select.h>
#include <unistd.h>

#include <wpa_ctrl.h>

#include "tests/support/camera_test.h"

namespace {

constexpr char supplicant_socket[] = "/var/run/wpa_supplicant/wlan0";
constexpr char hostapd_socket[] = "/var/run/hostapd/wlan1";

struct closing {
    void operator()(wpa_ctrl* connection) const { wpa_ctrl_close(connection); }
};
using connection = std::unique_ptr<wpa_ctrl, closing>;

connection connect_to(const char* socket) {
    return connection(wpa_ctrl_open(socket));
}

/// @return the answer; "no answer" after the library's ten seconds.
std::string ask(const connection& daemon, const std::string& command) {
    char answer[16384];
    std::size_t length = sizeof answer;
    const int result = wpa_ctrl_request(daemon.get(), command.c_str(), command.size(), answer, &length, nullptr);
    return result == 0 ? std::string(answer, length) : result == -2 ? "no answer" : "cannot send";
}

std::string value_of(const std::string& text, const std::string& key) {
    const std::size_t at = ("\n" + text).find("\n" + key + "=");
    if (at == std::string::npos)
        return "";
    const std::size_t start = at + key.size() + 1;
    return text.substr(start, text.find('\n', start) - start);
}

/// What has arrived by now.
lines events(const connection& daemon) {
    lines arrived;
    while (wpa_ctrl_pending(daemon.get()) == 1) {
        char event[16384];
        std::size_t length = sizeof event;
        if (wpa_ctrl_recv(daemon.get(), event, &length) == 0)
            arrived.emplace_back(event, length);
    }
    return arrived;
}

/// Reads in time: the kernel keeps ten events for who does not.
lines events_of(const connection& daemon, int seconds) {
    lines arrived = events(daemon);
    for (int i = 0; i < 2 * seconds; ++i) {
        usleep(500000);
        arrived = arrived + events(daemon);
    }
    return arrived;
}

access_point office() {
    return access_point("Office").bssid("02:00:00:00:01:00").channel(6).wpa2("office-key");
}

class control : public camera_test {
protected:
    void start(const scene& camera, const std::string& network = "key_mgmt=WPA-PSK\npsk=\"office-key\"") {
        plug_in(camera);
        write("/tmp/wpa_supplicant.conf",
              "ctrl_interface=/var/run/wpa_supplicant\nnetwork={\nssid=\"Office\"\n" + network + "\n}\n");
        write("/tmp/hostapd.conf", "ctrl_interface=DIR=/var/run/hostapd GROUP=netdev\ninterface=wlan1\nssid=Camera\n"
                                   "channel=6\nwpa=2\nwpa_passphrase=camera-key\nrsn_pairwise=CCMP\n");
        watch([] {
            return std::system("wpa_supplicant -B -c /tmp/wpa_supplicant.conf -i wlan0 -P /tmp/wpa_supplicant.pid") +
                   std::system("hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid");
        });
        let_daemons_start();
    }

    [[nodiscard]] int pid(const std::string& daemon) const {
        return std::atoi(read("/tmp/" + daemon + ".pid").c_str());
    }
};

TEST_F(control, a_search_is_told_step_by_step) {
    const std::string try_it = "<3>SME: Trying to authenticate with 02:00:00:00:01:00 (SSID='Office' freq=2437 MHz)";
    const std::string associate = "<3>Trying to associate with 02:00:00:00:01:00 (SSID='Office' freq=2437 MHz)";
    const std::string associated = "<3>Associated with 02:00:00:00:01:00";
    const std::string subnet = "<3>CTRL-EVENT-SUBNET-STATUS-UPDATE status=0";
    const std::string connected = "<3>CTRL-EVENT-CONNECTED - Connection to 02:00:00:00:01:00 completed [id=0 id_str=]";
    const std::string started = "<3>CTRL-EVENT-SCAN-STARTED ";
    const std::string results = "<3>CTRL-EVENT-SCAN-RESULTS ";
    const std::string not_found = "<3>CTRL-EVENT-NETWORK-NOT-FOUND ";
    const std::string refused = "<3>CTRL-EVENT-ASSOC-REJECT bssid=02:00:00:00:01:00 status_code=17";
    const lines tried = {results, try_it, associate};
    const struct {
        const char* name;
        access_point point;
        const char* network;
        int seconds;
        lines events;
        const char* state;
    } rows[] = {
        {"right key", office(), "psk=\"office-key\"", 5,
         tried + lines{associated, subnet,
                       "<3>WPA: Key negotiation completed with 02:00:00:00:01:00 [PTK=CCMP GTK=CCMP]", connected},
         "COMPLETED"},
        {"open", office().key("security", "open"), "key_mgmt=NONE", 5, tried + lines{associated, connected, subnet},
         "COMPLETED"},
        {"wrong key", office(), "psk=\"other-key\"", 22,
         tried +
             lines{associated, subnet, "<3>CTRL-EVENT-DISCONNECTED bssid=02:00:00:00:01:00 reason=15",
                   "<3>WPA: 4-Way Handshake failed - pre-shared key may be incorrect",
                   "<3>CTRL-EVENT-SSID-TEMP-DISABLED id=0 ssid=\"Office\" auth_failures=1 duration=10 reason=WRONG_KEY",
                   started, results, started, results, "<3>CTRL-EVENT-SSID-REENABLED id=0 ssid=\"Office\"", try_it,
                   associate, associated, subnet},
         "4WAY_HANDSHAKE"},
        {"not heard",
         access_point("Other"),
         "psk=\"office-key\"",
         13,
         {results, not_found, started, results, not_found},
         "SCANNING"},
        {"other security", office(), "key_mgmt=NONE", 5, {results, not_found}, "SCANNING"},
        {"refused", office().key("rejects", 17), "psk=\"office-key\"", 5, tried + lines{refused, started}, "SCANNING"},
        {"vanishing", office().key("vanishes_after_ms", 6000), "psk=\"office-key\"", 7,
         tried + lines{associated, subnet,
                       "<3>WPA: Key negotiation completed with 02:00:00:00:01:00 [PTK=CCMP GTK=CCMP]", connected,
                       "<3>CTRL-EVENT-BEACON-LOSS ",
                       "<3>CTRL-EVENT-DISCONNECTED bssid=02:00:00:00:01:00 reason=4 locally_generated=1", started},
         "SCANNING"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        start(scene("realtek").air(row.point), row.network);
        const connection daemon = connect_to(supplicant_socket);
        ASSERT_NE(daemon, nullptr);
        ASSERT_EQ(wpa_ctrl_attach(daemon.get()), 0);
        EXPECT_EQ(events_of(daemon, row.seconds), row.events);
        EXPECT_EQ(value_of(ask(daemon, "STATUS"), "wpa_state"), row.state);
    }
}

TEST_F(control, commands_are_answered_as_by_wpa_supplicant) {
    start(scene("realtek")
              .air(office().level(-48))
              .air(access_point("\x01 \"Süd\"").channel(11).key("security", "mixed").key("cipher", "tkipaes"))
              .key("addresses", {{"wlan0", {{"address", "192.168.8.20"}, {"after_ms", 800}}}}));
    const connection daemon = connect_to(supplicant_socket);
    const std::string networks = "network id / ssid / bssid / flags\n0\tOffice\tany\t";
    const std::string results = "bssid / frequency / signal level / flags / ssid\n";
    const std::string unjoined = "wpa_state=SCANNING\naddress=02:ca:3e:7a:00:00\n";
    const std::string network = "bssid=02:00:00:00:01:00\nfreq=2437\nssid=Office\nid=0\nmode=station\n"
                                "pairwise_cipher=CCMP\ngroup_cipher=CCMP\nkey_mgmt=WPA2-PSK\nwpa_state=COMPLETED\n";
    const struct {
        int after_ms; // the one before
        const char* command;
        std::string answer;
    } rows[] = {
        {0, "PING", "PONG\n"},
        {0, "STATUS", unjoined},
        {0, "LIST_NETWORKS", networks + "\n"},
        {0, "SCAN", "FAIL-BUSY\n"},
        {0, "SCAN_RESULTS", results},
        {0, "SIGNAL_POLL", "FAIL\n"},
        {0, "DETACH", "FAIL\n"},
        {0, "BSS 1", ""},
        {0, "STATUSX", "UNKNOWN COMMAND\n"},
        {3900, "STATUS", network + "address=02:ca:3e:7a:00:00\n"},
        {0, "LIST_NETWORKS", networks + "[CURRENT]\n"},
        {800, "STATUS", network + "ip_address=192.168.8.20\naddress=02:ca:3e:7a:00:00\n"},
        {0, "SCAN_RESULTS",
         results + "02:00:00:00:01:00\t2437\t-48\t[WPA2-PSK-CCMP][ESS]\tOffice\n"
                   "02:00:00:00:00:02\t2462\t-60\t[WPA-PSK-CCMP+TKIP][WPA2-PSK-CCMP+TKIP][ESS]\t"
                   "\\x01 \\\"S\\xc3\\xbcd\\\"\n"},
        {0, "SIGNAL_POLL",
         "RSSI=-48\nLINKSPEED=54\nNOISE=-95\nFREQUENCY=2437\nWIDTH=20 MHz (no HT)\nCENTER_FRQ1=2437\n"
         "AVG_RSSI=-48\nAVG_BEACON_RSSI=-48\n"},
        {0, "SCAN", "OK\n"},
        {0, "SCAN", "FAIL-BUSY\n"},
        {0, "DISCONNECT", "OK\n"},
        {0, "STATUS", "wpa_state=DISCONNECTED\naddress=02:ca:3e:7a:00:00\n"},
        {60000, "RECONNECT", "OK\n"},
        {0, "STATUS", unjoined},
        {3900, "REASSOCIATE", "OK\n"},
        {0, "STATUS", "wpa_state=ASSOCIATING\naddress=02:ca:3e:7a:00:00\n"},
        {100, "STATUS", network + "address=02:ca:3e:7a:00:00\n"},
    };
    for (const auto& row : rows) {
        usleep(static_cast<useconds_t>(row.after_ms) * 1000);
        EXPECT_EQ(ask(daemon, row.command), row.answer) << row.command;
    }
    EXPECT_EQ(value_of(ask(daemon, "BSS 02:00:00:00:01:00"), "level"), "-48");
    EXPECT_EQ(value_of(ask(daemon, "BSS 1"), "bssid"), "02:00:00:00:00:02");
}

TEST_F(control, hostapd_tells_who_visits) {
    start(scene("realtek").key("visitors", {{{"address", "02:00:00:00:00:07"}, {"after_ms", 1000}, {"signal", -50}},
                                            {{"address", "02:00:00:00:00:08"}, {"after_ms", 2000}}}));
    const connection daemon = connect_to(hostapd_socket);
    ASSERT_NE(daemon, nullptr);
    EXPECT_EQ(wpa_ctrl_attach(daemon.get()), 0);
    EXPECT_EQ(ask(daemon, "STA-FIRST"), "");
    EXPECT_EQ(events_of(daemon, 1),
              (lines{"<3>AP-STA-CONNECTED 02:00:00:00:00:07", "<3>EAPOL-4WAY-HS-COMPLETED 02:00:00:00:00:07"}));
    EXPECT_EQ(value_of(ask(daemon, "STATUS"), "num_sta[0]"), "1");
    events_of(daemon, 1);
    EXPECT_EQ(value_of(ask(daemon, "STA-FIRST"), "signal"), "-50");
    EXPECT_EQ(ask(daemon, "STA-NEXT 02:00:00:00:00:07").substr(0, 18), "02:00:00:00:00:08\n");
    EXPECT_EQ(ask(daemon, "STA-NEXT 02:00:00:00:00:08"), "");
    EXPECT_EQ(ask(daemon, "STA 02:00:00:00:00:09"), "FAIL\n");
    const std::string status = ask(daemon, "STATUS");
    EXPECT_EQ(status.rfind("state=ENABLED\nphy=phy0\nfreq=2437\n", 0), 0U);
    EXPECT_EQ(value_of(status, "ssid[0]"), "Camera");
    EXPECT_EQ(ask(daemon, "GET_CONFIG"), "bssid=02:ca:3e:7a:00:01\nssid=Camera\nwps_state=disabled\nwpa=2\n"
                                         "key_mgmt=WPA-PSK\ngroup_cipher=CCMP\nrsn_pairwise_cipher=CCMP\n");
}

TEST_F(control, sockets_live_as_long_as_their_daemons) {
    start(scene("realtek").air(office()));
    const connection supplicant = connect_to(supplicant_socket);
    const connection hostapd = connect_to(hostapd_socket);
    const connection other = connect_to(hostapd_socket);
    wpa_ctrl_attach(supplicant.get());
    wpa_ctrl_attach(hostapd.get());
    events_of(supplicant, 5);
    EXPECT_EQ(ask(supplicant, "TERMINATE"), "OK\n");
    kill(pid("hostapd"), SIGTERM);
    usleep(100000);
    EXPECT_EQ(events(supplicant),
              (lines{"<3>CTRL-EVENT-DISCONNECTED bssid=02:00:00:00:01:00 reason=3 locally_generated=1",
                     "<3>CTRL-EVENT-DSCP-POLICY clear_all", "<3>CTRL-EVENT-TERMINATING "}));
    EXPECT_EQ(events(hostapd), (lines{"<3>AP-DISABLED ", "<3>CTRL-EVENT-TERMINATING "}));
    EXPECT_EQ(events(other), lines{}); // who has not attached is told nothing
    EXPECT_EQ(ask(other, "PING"), "cannot send");
    EXPECT_FALSE(exists(supplicant_socket));
    EXPECT_EQ(connect_to(supplicant_socket), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(control, killed_daemon_leaves_its_socket) {
    start(scene("realtek"));
    const connection before = connect_to(hostapd_socket);
    kill(pid("hostapd"), SIGKILL);
    EXPECT_EQ(ask(before, "PING"), "cannot send");
    EXPECT_EQ(errno, ECONNREFUSED);
    EXPECT_EQ(connect_to(hostapd_socket), nullptr);
    EXPECT_EQ(errno, ECONNREFUSED);
    watch([] { return std::system("hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid"); });
    EXPECT_EQ(ask(connect_to(hostapd_socket), "PING"), "PONG\n");
    EXPECT_EQ(ask(before, "PING"), "cannot send"); // it was the other one's
}

TEST_F(control, file_without_ctrl_interface_opens_none) {
    plug_in(scene("realtek"));
    write("/tmp/hostapd.conf", "interface=wlan1\nssid=Camera\n");
    watch([] { return std::system("hostapd -B /tmp/hostapd.conf"); });
    EXPECT_EQ(connect_to(hostapd_socket), nullptr);
}

TEST_F(control, scene_has_the_sockets_misbehave) {
    start(scene("realtek").air(office()).key("control", "lies"));
    connection daemon = connect_to(supplicant_socket);
    EXPECT_EQ(wpa_ctrl_attach(daemon.get()), 0);
    EXPECT_NE(ask(daemon, "PING"), "PONG\n");
    EXPECT_EQ(ask(daemon, "STATUS").size(), 9011U);
    EXPECT_GT(events_of(daemon, 4).at(0).size(), 9000U);

    start(scene("realtek").air(office()).key("control", "floods"));
    daemon = connect_to(supplicant_socket);
    EXPECT_EQ(wpa_ctrl_attach(daemon.get()), 0);
    EXPECT_EQ(ask(daemon, "PING"), "PONG\n");
    EXPECT_GE(events(daemon).size(), 4900U);

    start(scene("realtek").air(office()).key("control", "silent"));
    daemon = connect_to(supplicant_socket);
    EXPECT_EQ(ask(daemon, "PING"), "no answer");
}

/// What a wait gives, and how long it lasts on the camera's clock.
template <typename Wait>
std::pair<int, long> timed(const Wait& wait) {
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_MONOTONIC_RAW, &time);
        return time.tv_sec * 1000 + time.tv_nsec / 1000000;
    };
    const long before = now();
    const int result = wait();
    return {result, now() - before};
}

TEST_F(control, waiting_for_a_daemon_moves_the_clock) {
    start(scene("realtek").air(office()));
    const connection daemon = connect_to(supplicant_socket);
    pollfd socket = {wpa_ctrl_get_fd(daemon.get()), POLLIN, 0};
    const auto poll_for = [&](int wait) { return timed([&] { return poll(&socket, 1, wait); }); };
    const auto select_for = [&](timeval* wait) {
        fd_set set;
        FD_ZERO(&set);
        FD_SET(socket.fd, &set);
        return timed([&] { return select(socket.fd + 1, &set, nullptr, nullptr, wait); });
    };
    EXPECT_EQ(poll_for(1000), std::pair(0, 1000L)); // nothing is due to who has not attached
    ASSERT_EQ(wpa_ctrl_attach(daemon.get()), 0);
    EXPECT_EQ(poll_for(10000), std::pair(1, 2690L)); // the scan ends 3.7 s after the start
    EXPECT_EQ(events(daemon).size(), 3U);
    EXPECT_EQ(select_for(nullptr), std::pair(1, 50L));
    EXPECT_EQ(events(daemon).size(), 2U);
    timeval moment = {0, 20000};
    EXPECT_EQ(select_for(&moment), std::pair(0, 20L));
    EXPECT_EQ(timed([] { return poll(nullptr, 0, 30); }), std::pair(0, 30L));
    EXPECT_EQ(events(daemon).size(), 2U);
    const timespec hour = {3600, 0};
    EXPECT_EQ(timed([&] { return nanosleep(&hour, nullptr); }), std::pair(0, 3600000L));
    EXPECT_EQ(timed([&] { return clock_nanosleep(CLOCK_MONOTONIC, 0, &hour, nullptr); }), std::pair(0, 3600000L));
}

TEST_F(control, clients_cost_the_descriptor_that_they_open) {
    start(scene("realtek"));
    const int before = open_descriptors();
    connection daemon = connect_to(supplicant_socket);
    wpa_ctrl_attach(daemon.get());
    EXPECT_EQ(open_descriptors(), before + 1);
    daemon.reset();
    EXPECT_EQ(open_descriptors(), before);
}

} // namespace
