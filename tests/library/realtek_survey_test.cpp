// SPDX-License-Identifier: MIT
// How a Realtek adapter is asked for what is in the air, and how what it answers is listed.

#include "tests/support/camera_test.h"

#include <algorithm>
#include <functional>

#include "libwlan/libwlan.h"
#include "tests/support/scan_stream.h"

namespace {

using scan_stream::elements;
using scan_stream::point;

const scene camera = scene("realtek");
const std::string one_network = point(1, "Net");

class realtek_survey : public camera_test {
protected:
    outcome survey() {
        return watch([&] { return run_site_survey(list); });
    }

    /// Surveys an air whose scan gives these bytes.
    outcome survey(const std::string& stream) {
        write("/answers/scan", stream);
        list.clear();
        return survey();
    }

    /// How often the library said this since plug_in().
    long times_said(const std::string& line) const {
        const lines all = said();
        return std::count(all.begin(), all.end(), line);
    }

    std::vector<sites> list;
};

TEST_F(realtek_survey, asks_again_while_the_driver_is_busy) {
    plug_in(camera.air(access_point("Net").channel(6).wpa2().level(-40)).key("scan", {{"busy", 2}}));
    EXPECT_EQ(survey(), (outcome{0, "", ""}));
    EXPECT_EQ(said(8),
              (lines{"wlan0 SIOCSIWSCAN", "- select 0.25 s", "wlan0 SIOCGIWSCAN = EAGAIN", "- select 0.1 s",
                     "wlan0 SIOCGIWSCAN = EAGAIN", "- select 0.1 s", "wlan0 SIOCGIWSCAN", "wlan0 SIOCGIWRANGE"}));
    EXPECT_EQ(told(list), lines{"Net|02:00:00:00:00:01|AES|WPA2-PSK|Infra|6|216|100"});
    EXPECT_EQ(read("/dev/console"),
              "do_site_survey[1105] ap_num=1\ndo_site_survey[1119] Print 1 APs\n"
              "i= 1 [Net], [02:00:00:00:00:01], [AES], [WPA2-PSK], [6] [100]\ndo_site_survey[1123] Done\n");
}

TEST_F(realtek_survey, gives_up_on_a_driver_that_stays_busy) {
    plug_in(camera.key("scan", {{"busy", 1000000}}));
    EXPECT_EQ(survey().result, -1);
    EXPECT_EQ(times_said("wlan0 SIOCGIWSCAN = EAGAIN"), 5 * 150);
    EXPECT_EQ(times_said("- usleep 0.005 s"), 5); // one pause after each try
}

TEST_F(realtek_survey, gives_up_on_an_interface_that_stays_down) {
    plug_in(camera.interface_down("wlan0").fault("ioctl", "EBUSY").match("SIOCSIFFLAGS").times(0));
    EXPECT_EQ(survey().result, -1);
    EXPECT_EQ(times_said("wlan0 SIOCSIFFLAGS up = EBUSY"), 60);
    EXPECT_EQ(times_said("- sleep 1 s"), 60);
}

TEST_F(realtek_survey, waits_on_after_an_interruption) {
    for (const char* error : {"EINTR", "EAGAIN"}) {
        SCOPED_TRACE(error);
        plug_in(camera.fault("select", error));
        EXPECT_EQ(survey(one_network), (outcome{0, "", ""}));
        EXPECT_EQ(names(list), lines{"Net"});
        EXPECT_EQ(times_said("- usleep 0.005 s"), 0); // it is no failed try
    }
}

TEST_F(realtek_survey, failures_are_told_and_keep_one_socket) {
    const std::string not_found = "do_site_survey[1105] ap_num=-1\n";
    const std::string not_read = "do_site_survey[1105] ap_num=1\ndo_site_survey[1113] get_scan_results() < 0\n";
    const struct {
        const char* name;
        scene camera;
        std::string err;
        std::string console; // at each of this many tries
        int tries = 1;
        std::string stream = one_network;
    } rows[] = {
        {"interface that stays down", camera.fault("ioctl", "EIO").match("SIOCGIFFLAGS"),
         "network_nic_ifc_up[525] SIOCGIFFLAGS: Input/output error\n",
         "driver_scan[1053] Enable wlan0 interface fail.\n"},
        {"no socket for the scan", camera.fault("socket", "EMFILE").nth(3), "", "driver_scan: create socket fail\n"},
        {"refused scan", camera.fault("ioctl", "EBUSY").match("SIOCSIWSCAN"), "SIOCSIWSCAN: Device or resource busy\n",
         ""},
        {"no socket for the results", camera.fault("socket", "EMFILE").nth(4).times(5), "",
         "driver_get_scan_results: create socket fail\n" + not_found, 5},
        {"no waiting", camera.fault("select", "EINVAL").times(5), "", "Unhandled signal - exiting...\n" + not_found, 5},
        {"refused results", camera.fault("ioctl", "EIO").match("SIOCGIWSCAN").times(5), "",
         "wlan0     Failed to read scan data : Input/output error\n\n" + not_found, 5},
#ifndef __SANITIZE_ADDRESS__ // its allocator cannot be made to fail
        {"no memory for more results than a request can ask for",
         camera.fault("alloc", "ENOMEM").match("131072").times(5), "",
         "driver_get_scan_results: Allocation failed. res_buf_len=131072\n" + not_found, 5, std::string(0x14000, '\0')},
#endif
        {"no socket for the range", camera.fault("socket", "EMFILE").nth(5),
         "wext::get_scan_results() socket:: Too many open files\n", not_read},
        {"refused range", camera.fault("ioctl", "EIO").match("SIOCGIWRANGE"),
         "wext::get_scan_results() ioctl:: Input/output error\n", not_read},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        EXPECT_EQ(survey(row.stream), (outcome{-1, "", row.err, 1})); // the request's own socket stays open
        std::string console;
        for (int tried = 0; tried < row.tries; ++tried)
            console += row.console;
        EXPECT_EQ(read("/dev/console"), console);
    }
}

TEST_F(realtek_survey, each_step_fails_with_1_below_0) {
    const scene refused = camera.fault("ioctl", "EIO").times(0);
    const scene no_socket = camera.fault("socket", "EMFILE").times(0);
    scan_result_t results[max_scan_results]{};
    int accepted = 0;
    const auto whole = [&] { return wext().do_site_survey(list); };
    const auto scan = [] { return wext().driver_scan(nullptr, "wlan0"); };
    const auto fetch = [&] { return wext().driver_get_scan_results(nullptr, "wlan0", results); };
    const auto read = [&] {
        return wext().get_scan_results(nullptr, "wlan0", 0, &accepted, results, WIRELESS_MODE_INFRA, list);
    };
    const struct {
        const char* name;
        scene camera;
        std::function<int()> step;
    } rows[] = {
        {"survey without a scan", refused.match("SIOCSIWSCAN"), whole},
        {"survey without results", refused.match("SIOCGIWSCAN"), whole},
        {"survey without a range", refused.match("SIOCGIWRANGE"), whole},
#ifndef __SANITIZE_ADDRESS__ // its allocator cannot be made to fail
        {"results without memory", camera.fault("alloc", "ENOMEM").match("4096"), fetch},
#endif
        {"scan, interface down", refused.match("SIOCGIFFLAGS"), scan},
        {"scan, no socket", camera.fault("socket", "EMFILE").nth(2), scan},
        {"refused scan", refused.match("SIOCSIWSCAN"), scan},
        {"results, no socket", no_socket, fetch},
        {"results, no waiting", camera.fault("select", "EINVAL"), fetch},
        {"refused results", refused.match("SIOCGIWSCAN"), fetch},
        {"range, no socket", no_socket, read},
        {"refused range", refused.match("SIOCGIWRANGE"), read},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        write("/answers/scan", one_network);
        EXPECT_EQ(watch(row.step).result, -1);
    }
    EXPECT_EQ(names(list), lines{});
}

TEST_F(realtek_survey, filter_counts_but_lists_access_points) {
    const struct {
        const char* name;
        WIRELESS_MODE filter;
        int accepted;
        lines listed;
    } rows[] = {
        {"any", WIRELESS_MODE_ANY, 7, {"2"}},
        {"access points", WIRELESS_MODE_MASTER, 2, {"2"}},
        {"infrastructure, the same", WIRELESS_MODE_INFRA, 2, {"2"}},
        {"ad hoc", WIRELESS_MODE_ADHOC, 1, {}},
        {"automatic", WIRELESS_MODE_AUTO, 1, {}},
    };
    scan_result_t results[7]{}; // one of each mode, whose number is its name
    for (int mode = WIRELESS_MODE_ADHOC; mode <= WIRELESS_MODE_AUTO; ++mode) {
        results[mode].mode = static_cast<WIRELESS_MODE>(mode);
        results[mode].ssid[0] = static_cast<unsigned char>('0' + mode);
    }
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera);
        list.clear();
        int accepted = 0;
        EXPECT_EQ(wext().get_scan_results(nullptr, "wlan0", 7, &accepted, results, row.filter, list), 0);
        EXPECT_EQ(accepted, row.accepted);
        EXPECT_EQ(names(list), row.listed);
    }
}

TEST_F(realtek_survey, scan_without_a_byte_has_no_results) {
    plug_in(camera);
    write("/answers/scan", "");
    scan_result_t results[max_scan_results]{};
    EXPECT_EQ(wext().driver_get_scan_results(nullptr, "wlan0", results), -1);
}

TEST_F(realtek_survey, needs_no_console) {
    plug_in(camera.fault("open", "EIO").match("console"));
    EXPECT_EQ(survey(one_network), (outcome{0, "", ""}));
    EXPECT_EQ(names(list), lines{"Net"});
}

TEST_F(realtek_survey, dense_air_grows_the_buffer) {
    std::string stream;
    for (int number = 0; number < 256; ++number) {
        const std::string vendor_element = scan_stream::bytes({221, 120}) + std::string(120, 'v');
        stream += point(number, "net " + std::to_string(number), elements(vendor_element));
    }
    ASSERT_GT(stream.size(), 48U * 1024);
    const struct {
        const char* name;
        bool hint;
        int too_small; // buffers, from 4 KiB on
    } rows[] = {{"driver that names no length", false, 4}, {"driver that names the length", true, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera.key("scan", {{"hint", row.hint}}));
        EXPECT_EQ(survey(stream).result, 0);
        EXPECT_EQ(list.size(), 256U);
        EXPECT_EQ(times_said("wlan0 SIOCGIWSCAN = E2BIG"), row.too_small);
    }
}

TEST_F(realtek_survey, grown_buffer_stays_for_the_next_request) {
    plug_in(camera.key("scan", {{"hint", false}}).fault("ioctl", "EAGAIN").match("SIOCGIWSCAN").nth(2));
    EXPECT_EQ(survey(std::string(20000, '\0')).result, 0);
    EXPECT_EQ(times_said("wlan0 SIOCGIWSCAN = E2BIG"), 3); // 4, 8 and 16 KiB; the second is tried again
}

TEST_F(realtek_survey, lists_no_more_than_256) {
    std::string stream;
    lines expected;
    for (int number = 0; number < 256; ++number) {
        stream += point(number, print("net %03d", number));
        expected.push_back(print("net %03d|02:00:00:00:00:%02X|NONE|OPEN|Infra|6|200|70", number, number));
    }
    plug_in(camera);
    EXPECT_EQ(survey(stream + point(256, "net 256")).result, 0);
    EXPECT_EQ(told(list), expected);
}

TEST_F(realtek_survey, signal_is_a_share_of_the_best_quality) {
    const struct {
        const char* name;
        int best, quality, signal;
    } rows[] = {
        {"all of it", 100, 100, 100},        {"a part", 80, 20, 25},   {"rounded down", 94, 93, 98},
        {"more than the best", 70, 71, 100}, {"best of 0", 0, 1, 100}, {"0 of 0", 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera.key("scan", {{"max_quality", row.best}}).air(access_point("Net").key("quality", row.quality)));
        EXPECT_EQ(survey().result, 0);
        ASSERT_EQ(list.size(), 1U);
        EXPECT_EQ(list[0].signal, row.signal);
        list.clear();
    }
}

} // namespace
