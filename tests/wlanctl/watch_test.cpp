// SPDX-License-Identifier: MIT
// What `wlanctl status`, `wlanctl watch` and `wlanctl doctor` tell of what runs.

#include "tests/wlanctl/wlanctl_test.h"

#include <algorithm>
#include <sstream>

#include <fcntl.h>
#include <sys/file.h>

namespace {

std::vector<nlohmann::json> objects_of(const std::string& lines) {
    std::vector<nlohmann::json> objects;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);)
        objects.push_back(nlohmann::json::parse(line));
    return objects;
}

TEST_F(wlanctl, status_says_where_the_camera_is) {
    const struct {
        scene camera;
        nlohmann::json station, access_point;
        const char* text;
    } rows[] = {
        {realtek.key("best_channel", 6),
         {{"interface", "wlan0"},
          {"ssid", "Office"},
          {"bssid", "02:00:5e:00:00:01"},
          {"security", "WPA2-PSK AES"},
          {"signal_dbm", -40},
          {"channel", 6},
          {"address", nullptr}},
         {{"interface", "wlan1"},
          {"ssid", "Own\\x5c\"\\x07"},
          {"channel", 6},
          {"stations", {{"count", 0}, {"addresses", nlohmann::json::array()}}}},
         "station       Office\n  interface   wlan0\n  signal      ##### -40 dBm\n  channel     6\n"
         "  security    WPA2-PSK AES\n  bssid       02:00:5e:00:00:01\naccess point  Own\\x5c\"\\x07\n"},
        {mediatek,
         {{"interface", "wlan0"},
          {"ssid", "Office"},
          {"bssid", "02:00:5e:00:00:01"},
          {"security", nullptr},
          {"signal_dbm", -40},
          {"channel", 6},
          {"address", nullptr}},
         {{"interface", "ra0"}, {"ssid", "Own\\x5c\"\\x07"}, {"channel", 6}, {"stations", nullptr}},
         "station       Office\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.camera.json_text());
        plug_in(row.camera);
        EXPECT_EQ(run("repeat --ssid Office --key office-key --ap-ssid 'Own\\x5c\"\\x07'"), 0);
        const auto status = nlohmann::json::parse(told("status --json"));
        EXPECT_EQ(status["station"], row.station);
        EXPECT_EQ(status["access_point"], row.access_point);
        EXPECT_EQ(status["request"], nullptr);
        EXPECT_TRUE(has(told("status"), row.text));
        EXPECT_EQ(err, "");
    }
}

TEST_F(wlanctl, status_tells_stations_as_far_as_known) {
    const nlohmann::json visitors = {{{"address", "02:00:5e:00:00:21"}}, {{"address", "02:00:5e:00:00:22"}}};
    const nlohmann::json both = {{"count", 2}, {"addresses", {"02:00:5e:00:00:21", "02:00:5e:00:00:22"}}};
    const struct {
        const char* control; // socket of hostapd
        nlohmann::json stations;
    } rows[] = {{"good", both}, {"floods", both}, {"lies", nullptr}, {"silent", nullptr}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.control);
        plug_in(realtek.key("best_channel", 6).key("visitors", visitors).key("control", row.control));
        EXPECT_EQ(run("ap start --ssid Camera --wait 0"), 0);
        let_seconds_pass();
        const auto point = nlohmann::json::parse(told("status --json"))["access_point"];
        EXPECT_EQ(point["stations"], row.stations);
        EXPECT_EQ(point["ssid"], "Camera"); // from its configuration, where it does not tell
        EXPECT_EQ(point["channel"], 6);
    }
}

TEST_F(wlanctl, status_names_the_request_that_runs) {
    plug_in(realtek);
    run("status");
    const int lock = open("world/var/run/wlanctl.lock", O_RDWR | O_CREAT, 0600);
    EXPECT_EQ(::write(lock, "123 join\033", 9), 9);
    EXPECT_EQ(flock(lock, LOCK_EX), 0); // as the request does
    EXPECT_TRUE(has(told("status"), "request       wlanctl join\\x1b, process 123\n"));
    close(lock);
    EXPECT_EQ(nlohmann::json::parse(told("status --json"))["request"], nullptr);
}

TEST_F(wlanctl, watch_tells_a_line_a_look) {
    plug_in(realtek);
    EXPECT_EQ(run("join Office --key office-key"), 0);
    EXPECT_EQ(told("watch --count 2 --interval 5"),
              "0:00:00  Office -40 dBm (wlan0, channel 6, WPA2-PSK AES, 02:00:5e:00:00:01)\n"
              "0:00:05  Office -40 dBm (wlan0, channel 6, WPA2-PSK AES, 02:00:5e:00:00:01)\n");
    const auto lines = objects_of(told("watch --count 2 --json"));
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1]["seconds"], 2);
    EXPECT_EQ(lines[1]["station"]["ssid"], "Office");
    EXPECT_EQ(lines[1]["access_point"], nullptr);
    EXPECT_EQ(lines[2]["outcome"], "done");
    write("/lines", told("watch --count 1 --json"));
    EXPECT_EQ(std::system("'" SCHEMA_CHECK "' '" PROGRESS_SCHEMA "' <lines"), 0);
    EXPECT_EQ(run("disconnect"), 0);
    EXPECT_EQ(told("watch --count 1"), "0:00:00  not joined\n");
}

TEST_F(wlanctl, watch_waits_and_does_not_turn) {
    plug_in(mediatek);
    EXPECT_EQ(run("watch --count 2 --interval 60"), 0);
    const std::string calls = journal();
    const auto lines = std::count(calls.begin(), calls.end(), '\n');
    EXPECT_LT(lines, 60 * 3);
    EXPECT_FALSE(std::regex_search(calls, std::regex(" set |SIOCSI")));
}

TEST_F(wlanctl, watch_draws_until_ctrl_c) {
    const struct {
        const char* environment;
        const char* curve; // of -40 dBm, which is the most, at the second look
        bool colours;
    } rows[] = {
        {"LC_ALL=C.UTF-8 NO_COLOR=1", " -50 │██\033[K\r\n", false},
        {"LC_ALL=C.UTF-8 NO_COLOR=", " -50 │██\033[K\r\n", true},
        {"LC_ALL= LC_CTYPE=POSIX LANG=C.UTF-8 NO_COLOR=", " -50 |##\033[K\r\n", true},
    };
    plug_in(realtek.air(access_point("A name that is as long as can be").level(-30).channel(1)));
    EXPECT_EQ(run("join 'A name that is as long as can be'"), 0);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.environment);
        const terminal terminal("env TERM=xterm COLUMNS=30 " + std::string(row.environment) + " " +
                                command("watch --interval 1", "100"));
        std::string shown = terminal.show(row.curve);
        EXPECT_TRUE(has(shown, row.curve));
        EXPECT_TRUE(has(shown, "Joined A name that is as long~\033[K"));
        EXPECT_EQ(has(shown, "\033[32m"), row.colours);
        EXPECT_EQ(terminal.press_ctrl_c(), 0);
        EXPECT_TRUE(has(terminal.show("\033[?25h"), "\033[?7h\033[?25h")); // the cursor is back
    }
    const terminal dumb("env TERM=dumb " + command("watch --count 1"));
    EXPECT_TRUE(has(dumb.show("nothing that it shows"), "0:00:00  A name"));
}

TEST_F(wlanctl, doctor_looks_at_what_runs) {
    const auto row_of = [&](const std::string& what) {
        run("--json doctor");
        const auto answer = nlohmann::json::parse(out);
        for (const auto& check : answer["checks"]) {
            if (check["what"].get<std::string>().find(what) == 0)
                return check;
        }
        return nlohmann::json();
    };
    plug_in(realtek);
    EXPECT_EQ(row_of("control socket"), nullptr);
    EXPECT_EQ(run("join Office --key office-key"), 0);
    EXPECT_EQ(row_of("control socket of wpa_supplicant")["breaks"], nullptr);
    plug_in(realtek.fault("connect", "ECONNREFUSED").match("hostapd").times(0));
    EXPECT_EQ(run("ap start --ssid Camera --wait 0"), 0);
    EXPECT_EQ(row_of("control socket of hostapd")["found"], "no answer");
    EXPECT_TRUE(has(row_of("control socket of hostapd")["breaks"].dump(), "guessed"));
}

TEST_F(wlanctl, doctor_sees_descriptors_run_out) {
    plug_in(mediatek);
    const std::string watching = command("watch --interval 3600", "1");
    // Of 220 descriptors the command uses less than 20 itself, and the camera one from 200 on.
    const std::string taken = "for i in {20..190}; do eval \"exec $i</dev/null\"; done; ";
    for (const auto& [preparation, breaks] : {std::pair<std::string, bool>("", false), {taken, true}}) {
        SCOPED_TRACE(preparation);
        const terminal terminal("bash -c 'ulimit -n 220; " + preparation + "exec \"$@\"' bash " + watching);
        terminal.show("Ctrl-C ends");
        run("--json doctor");
        const auto answer = nlohmann::json::parse(out);
        const auto row = std::find_if(answer["checks"].begin(), answer["checks"].end(), [](const auto& check) {
            return check["what"].template get<std::string>().find("descriptors of wlanctl") == 0 &&
                   has(check["found"].dump(), " of 220");
        });
        ASSERT_NE(row, answer["checks"].end());
        EXPECT_EQ((*row)["breaks"] != nullptr, breaks) << *row;
        EXPECT_EQ(terminal.press_ctrl_c(), 0);
    }
}

} // namespace
