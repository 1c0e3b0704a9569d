// SPDX-License-Identifier: MIT
// The daemons' control sockets, as programs with Debian's library for them find them. Calls of this
// test are intercepted like the library's.

#include <csignal>
#include <memory>

#include <sys/socket.h>
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
         tried + lines{associated, subnet, "<3>CTRL-EVENT-DISCONNECTED bssid=02:00:00:00:01:00 reason=15",
                       "<3>WPA: 4-Way Handshake failed - pre-shared key may be incorrect",
                       "<3>CTRL-EVENT-SSID-TEMP-DISABLED id=0 ssid=\"Office\" auth_failures=1 duration=10 "
                       "reason=WRONG_KEY",
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

} // namespace
