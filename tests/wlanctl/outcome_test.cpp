// SPDX-License-Identifier: MIT
// What comes of a request, and why nothing did: told once, never as joined without a link.

#include "tests/wlanctl/wlanctl_test.h"

#include <chrono>
#include <csignal>
#include <thread>

namespace {

using nlohmann::json;

constexpr char camera_settings[] = "[access_point]\nssid = Camera\nkey = camera-key\nauth = wpa2psk\nenc = aes\n"
                                   "[client]\nssid = Office\nkey = office-key\nauth = wpa2psk\nenc = aes\n"
                                   "[dhcp_server]\naddress = 192.168.8.1\npool_start = 192.168.8.100\n"
                                   "pool_end = 192.168.8.200\nnetmask = 255.255.255.0\n"
                                   "[system]\nmodel = Camera\nmanufacturer = Example\n";

class outcome_test : public wlanctl {
protected:
    void plug_in(const scene& camera) const {
        wlanctl::plug_in(camera);
        write("/camera.conf", camera_settings);
    }

    /// Holds every line that was told against the schema.
    ~outcome_test() override {
        write("/lines", all_lines);
        EXPECT_EQ(std::system("'" SCHEMA_CHECK "' '" PROGRESS_SCHEMA "' <lines >schema.out 2>&1"), 0)
            << read("/schema.out");
    }

    /// Runs a request for programs.
    /// @return the last line.
    json outcome_of(const std::string& arguments, const std::string& key = "") {
        const int status = run("--json --progress " + arguments, key);
        lines = out;
        all_lines += out;
        const std::string last = lines.substr(lines.rfind('\n', lines.size() - 2) + 1);
        json outcome = json::parse(last, nullptr, false);
        EXPECT_EQ(outcome.value("event", ""), "outcome") << lines;
        EXPECT_EQ(status, outcome.value("ok", false) ? 0 : 1) << lines;
        return outcome;
    }

    std::string lines;     ///< of the last request
    std::string all_lines; ///< of all
};

const access_point home = access_point("Home").bssid("02:00:5e:00:00:02").channel(11).level(-60);
const scene realtek_air = realtek.air(home);
const scene mediatek_air = scene("mediatek").air(office).air(home);

TEST_F(outcome_test, joining_ends_in_one_reason) {
    const struct {
        const char* name;
        scene camera;
        const char* arguments;
        const char* key;
        const char* reason; ///< empty when it is joined
        bool certain = true;
    } rows[] = {
        {"right key", realtek_air, "join Office --key-file -", "office-key", ""},
        {"wrong key", realtek_air, "join Office --key-file -", "wrong-key", "wrong_key"},
        {"open network", realtek_air, "join Home", "", ""},
        {"not in range", realtek_air, "join Away --key-file -", "office-key", "not_heard"},
        {"not in range, no key", realtek_air, "join Away", "", "not_heard"},
        {"refused", scene("realtek").air(office.key("rejects", 17)), "join Office --key-file -", "office-key",
         "refused"},
        {"another security", realtek_air, "join Home --auth wpa2psk --key-file -", "office-key", "refused", false},
        {"no address", realtek_air, "join Home --address --wait 10", "", "no_address"},
        {"no program", realtek_air.missing_program("wpa_supplicant"), "join Home", "", "program_missing"},
        {"driver refuses", mediatek_air.fault("ioctl", "EIO").match("ApCliSsid"), "join Home", "", "driver_refused"},
        {"right key", mediatek_air, "join Office --key-file -", "office-key", ""},
        {"wrong key", mediatek_air, "join Office --key-file -", "wrong-key", "wrong_key", false},
        {"open network", mediatek_air, "join Home", "", ""},
        {"not in range", mediatek_air, "join Away --key-file -", "office-key", "not_heard"},
        {"no address", mediatek_air, "join Home --address --wait 10", "", "no_address"},
        {"no adapter", scene("none"), "join Home", "", "no_adapter"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.camera.json_text().substr(0, 22) + row.name);
        plug_in(row.camera);
        const json outcome = outcome_of(row.arguments, row.key);
        EXPECT_EQ(outcome.value("reason", ""), row.reason) << lines;
        EXPECT_EQ(outcome.value("certain", true), row.certain);
    }
}

TEST_F(outcome_test, joined_network_is_described) {
    const scene addresses = realtek_air.key("addresses", {{"wlan0", {{"address", "192.168.8.20"}, {"after_ms", 800}}}});
    plug_in(addresses);
    const json outcome = outcome_of("join Office --key-file - --address", "office-key");
    EXPECT_EQ(outcome["outcome"], "joined");
    EXPECT_EQ(outcome["ssid"], "Office");
    EXPECT_EQ(outcome["bssid"], "02:00:5e:00:00:01");
    EXPECT_EQ(outcome["channel"], 6);
    EXPECT_EQ(outcome["signal_dbm"], -40);
    EXPECT_EQ(outcome["address"], "192.168.8.20");
    for (const char* event : {"scanning", "heard", "configuring", "associating", "address"})
        EXPECT_TRUE(has(lines, std::string("{\"event\": \"") + event));
    EXPECT_FALSE(has(lines, "office-key"));
}

TEST_F(outcome_test, access_point_is_described_or_refused) {
    const struct {
        const char* name;
        scene camera;
        const char* reason;
        int channel = 0;
    } rows[] = {
        {"its own hostapd", realtek, "", 1},
        {"channel 1, stock", realtek.key("hostapd", "wrapped").key("best_channel", 1), "", 1},
        {"40 MHz do not fit", realtek.key("hostapd", "wrapped").key("best_channel", 11), "daemon_refused"},
        {"no hostapd", realtek.missing_program("hostapd"), "program_missing"},
        {"no DHCP server", realtek.missing_program("udhcpd"), "program_missing"},
        {"MediaTek", mediatek_air, "", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        const json outcome = outcome_of("ap start --stored");
        EXPECT_EQ(outcome.value("reason", ""), row.reason) << lines;
        if (outcome["ok"] == true) {
            EXPECT_EQ(outcome["channel"], row.channel);
            EXPECT_EQ(outcome["dhcp_server"], true);
        }
    }
}

TEST_F(outcome_test, daemon_s_own_lines_are_told) {
    plug_in(realtek.key("hostapd", "wrapped").key("best_channel", 11));
    const json outcome = outcome_of("ap start --stored");
    EXPECT_TRUE(has(outcome["lines"].dump(), "Could not select hw_mode and channel. (-3)"));
}

TEST_F(outcome_test, stored_access_point_comes_back_up) {
    for (const scene& camera : {scene("realtek").air(home), scene("mediatek").air(home)}) {
        plug_in(camera);
        const json outcome = outcome_of("join --stored --or-ap --wait 10");
        EXPECT_EQ(outcome["reason"], "not_heard") << lines;
        EXPECT_EQ(outcome["fallback"]["ok"], true);
        EXPECT_EQ(outcome["fallback"]["ssid"], "Camera");
    }
    plug_in(realtek);
    EXPECT_EQ(outcome_of("join --stored --or-ap").count("fallback"), 0);
}

TEST_F(outcome_test, lying_daemons_do_not_join) {
    for (const char* control : {"lies", "floods", "silent"}) {
        SCOPED_TRACE(control);
        plug_in(scene("realtek").air(office).key("control", control));
        const json outcome = outcome_of("join Office --key-file - --wait 20", "wrong-key");
        EXPECT_EQ(outcome["ok"], false) << lines;
        EXPECT_FALSE(outcome.value("reason", "").empty());
    }
}

/// Every call of a joining camera that can fail, failing.
TEST_F(outcome_test, no_fault_ends_in_joined_without_a_link) {
    const char* const calls[] = {"ioctl", "socket", "open", "fopen", "system", "popen", "kill", "write", "connect"};
    for (const scene& camera : {realtek_air, mediatek_air}) {
        for (const char* call : calls) {
            for (const int nth : {1, 3, 9, 20}) {
                SCOPED_TRACE(std::string(call) + " " + std::to_string(nth));
                plug_in(camera.fault(call, "EIO").nth(nth).times(0));
                const json outcome = outcome_of("join Office --key-file - --wait 10", "office-key");
                if (outcome["ok"] == true) {
                    EXPECT_EQ(outcome["bssid"], "02:00:5e:00:00:01") << lines;
                } else {
                    EXPECT_FALSE(outcome.value("reason", "").empty()) << lines;
                }
            }
        }
    }
}

TEST_F(outcome_test, names_go_in_as_they_come_out) {
    const scene odd = scene("realtek").air(access_point().key("ssid_hex", "1b5b41ff5c20").channel(6));
    plug_in(odd);
    EXPECT_EQ(outcome_of(R"(join '\x1b[A\xff\x5c\x20')")["ok"], true) << lines;
    EXPECT_EQ(outcome_of("join --ssid-hex 1b5b41ff5c20")["ok"], true) << lines;
    const std::string longest(32, 'n');
    plug_in(scene("realtek").air(access_point(longest).channel(6)));
    EXPECT_EQ(json::parse(told("--json survey"))["networks"][0]["name"], longest);
    EXPECT_EQ(outcome_of("join " + longest)["ok"], true) << lines;
    for (const char* bad : {"00", "4", "zz", "0a", ""})
        EXPECT_EQ(run(std::string("join --ssid-hex '") + bad + "'"), 2) << bad;
}

TEST_F(outcome_test, open_twin_of_a_protected_network_is_noticed) {
    plug_in(scene("realtek").air(access_point("Office").channel(6)));
    EXPECT_EQ(outcome_of("join Office")["ok"], true);
    EXPECT_TRUE(has(lines, "\"event\": \"warning\""));
}

TEST_F(outcome_test, what_is_stored_is_joined_next) {
    plug_in(realtek_air);
    EXPECT_EQ(outcome_of("store forget")["ok"], true);
    EXPECT_EQ(outcome_of("join Home --store")["stored"], true);
    EXPECT_EQ(outcome_of("join --stored")["ssid"], "Home");
    EXPECT_EQ(outcome_of("store set Office --key-file -", "office-key")["ok"], true);
    EXPECT_EQ(outcome_of("join --stored")["ssid"], "Office");
    EXPECT_EQ(outcome_of("disconnect")["ok"], true);
    EXPECT_EQ(json::parse(told("--json status"))["interfaces"][0]["associated"], false);
}

// Two at once, and one that is cancelled
// --------------------------------------------------------------------------------------------------------------------

/// A command that runs while the test goes on.
class running {
public:
    explicit running(const std::string& command) : child_(fork()) {
        if (child_ == 0) {
            execl("/bin/sh", "sh", "-c", ("exec " + command + " >running.out 2>running.err").c_str(), nullptr);
            _exit(127);
        }
    }
    ~running() { end(SIGKILL); }
    running(const running&) = delete;
    running& operator=(const running&) = delete;

    /// @return the status with which it ends.
    int end(int signal) {
        int status = 0;
        if (child_ <= 0)
            return -1;
        kill(child_, signal);
        waitpid(child_, &status, 0);
        child_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t child_;
};

TEST_F(outcome_test, cancelled_requests_stop_what_they_started) {
    const char* const phases[] = {"scanning", "configuring", "associating"};
    for (const char* phase : phases) {
        SCOPED_TRACE(phase);
        plug_in(scene("realtek").air(office));
        write("/key", "wrong-key");
        running request(command("--json --progress join Office --key-file key --wait 300", "1"));
        while (read("/running.out").find(phase) == std::string::npos)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(request.end(SIGTERM), 1);
        all_lines += read("/running.out");
        EXPECT_TRUE(has(all_lines.substr(all_lines.rfind('{')), "\"reason\": \"cancelled\""));
        EXPECT_FALSE(fs::exists("world/tmp/wpa_supplicant.pid"));
    }
}

TEST_F(outcome_test, second_request_waits_its_turn) {
    plug_in(scene("realtek").air(home));
    outcome_of("store set Office --key-file -", "office-key");
    running request(command("--json --progress join --stored --address --wait 300", "1"));
    while (read("/running.out").find("associating") == std::string::npos)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const json second = outcome_of("survey --lock-wait 0");
    EXPECT_EQ(second["reason"], "busy");
    EXPECT_EQ(second["process"]["command"], "join");
    EXPECT_EQ(request.end(SIGINT), 1);
    EXPECT_EQ(outcome_of("survey --lock-wait 0")["ok"], true);
}

} // namespace
