// SPDX-License-Identifier: MIT
// What the kernel and the driver are asked about interfaces, associations and links.

#include "tests/support/camera_test.h"

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

#include "libwlan/libwlan.h"

namespace {

const scene camera = scene("mediatek").key("clock_ms", 5).air(access_point("Net").channel(6).level(-40));
const scene no_sockets = camera.fault("socket", "EINVAL").times(0);
const scene no_address = camera.fault("ioctl", "EINVAL").match("SIOCGIWAP").times(0);
const scene no_frequency = camera.fault("ioctl", "EINVAL").match("SIOCGIWFREQ").times(0);

class link_status : public camera_test {
protected:
    /// Puts the test on a camera that has joined "Net", unless it lacks sockets.
    void join_on(const scene& plugged) {
        plug_in(plugged);
        watch([] {
            return do_infra_mode_mtk(text("Net"), text("02:00:00:00:00:01"), AUTH_OPEN, ENC_NONE, nullptr, 6, 1);
        });
    }
};

// Association
// --------------------------------------------------------------------------------------------------------------------

TEST_F(link_status, three_addresses_are_no_access_point) {
    const struct {
        int byte; // six times
        int usable;
    } rows[] = {{0x00, 0}, {0xFF, 0}, {0x44, 0}, {0x45, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.byte);
        sockaddr address{};
        std::fill_n(address.sa_data, 6, static_cast<char>(row.byte));
        EXPECT_EQ(does_have_vaild_mac(&address), row.usable);
        address.sa_data[5] = 1;
        EXPECT_EQ(does_have_vaild_mac(&address), 1);
    }
}

TEST_F(link_status, association_is_the_interface_s_own) {
    join_on(camera);
    EXPECT_EQ(does_wifi_associated("wlan0"), 1);
    EXPECT_EQ(does_wifi_associated("ra0"), 0);
}

TEST_F(link_status, unknown_association_counts_as_none) {
    const struct {
        const char* name;
        scene camera;
        const char* interface;
        const char* err;
    } rows[] = {
        {"no name", camera, nullptr, "[does_wifi_associated]interface should not be null\n"},
        {"no socket", no_sockets, "wlan0", "[does_wifi_associated]open socket failed.\n"},
        {"refused", no_address, "wlan0", "[does_wifi_associated]SIOCGIWAP failed.\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        join_on(row.camera);
        EXPECT_EQ(watch([&] { return does_wifi_associated(row.interface); }), (outcome{0, "", row.err}));
    }
}

// Channel
// --------------------------------------------------------------------------------------------------------------------

TEST_F(link_status, channel_of_a_station) {
    const std::string associated = "get_wifi_channel[1329] associ = true\n";
    const std::string refused = "[get_wifi_channel]SIOCGIWAP failed.\n";
    const std::string no_channel = "get_wifi_channel[1345] return -1\n";
    const struct {
        const char* name;
        scene camera;
        const char* interface;
        int channel;
        std::string err;
        int left_open = 0;
    } rows[] = {
        {"associated", camera, "wlan0", 6, associated + "get_wifi_channel[1341] wrq.u.freq.m=6\n"},
        {"not associated", camera, "apclii0", -1, no_channel},
        {"no name", camera, nullptr, -1, "[get_wifi_channel]interface should not be null\n"},
        {"no socket", no_sockets, "wlan0", -1, "[get_wifi_channel]open socket failed.\n"},
        {"no address", no_address, "wlan0", -1, refused + no_channel},
        {"no frequency", no_frequency, "wlan0", -1, associated + "SIOCGIWFREQ:: Invalid argument\n", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        join_on(row.camera);
        EXPECT_EQ(watch([&] { return get_wifi_channel(row.interface); }),
                  (outcome{row.channel, "", row.err, row.left_open}));
    }
}

TEST_F(link_status, radio_is_pinned_to_the_station_s_channel) {
    join_on(camera);
    wlan radio;
    ASSERT_EQ(radio.init(), 0);
    EXPECT_EQ(watch([&] { return radio.set_current_channel(); }).result, 0);
    EXPECT_EQ(said().back(), "wlan0 set Channel=6");
}

TEST_F(link_status, current_channel_needs_no_association) {
    const std::string told = "get_current_wifi_channel[1387] wrq.u.freq.m=6\n";
    const std::string refused = "SIOCGIWFREQ:: Invalid argument\n";
    const struct {
        const char* name;
        scene camera;
        const char* interface;
        outcome traced; // with a socket that stays open
        std::string trace;
    } rows[] = {
        {"answered", camera, "wlan0", {6, told, "", 1}, "wrq.u.freq.m=6"},
        {"no name", camera, nullptr, {-1, "", "", 0}, "interface should not be null"},
        {"no socket", no_sockets, "wlan0", {-1, "", "", 0}, "open socket failed"},
        {"refused", no_frequency, "wlan0", {-1, "", refused, 1}, "ioctl SIOCGIWFREQ fail: Invalid argument"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto ask = [&] { return get_current_wifi_channel(row.interface); };
        join_on(row.camera);
        write("/tmp/debug_level", "4");
        EXPECT_EQ(watch(ask), row.traced);
        EXPECT_EQ(read("/dev/console"), "\033[1;34m5 [get_current_wifi_channel] " + row.trace + "\033[0m\n");

        join_on(row.camera);
        write("/tmp/debug_level", "0");
        outcome quiet = row.traced;
        ++quiet.opened; // the console, which nothing was written to
        EXPECT_EQ(watch(ask), quiet);
        EXPECT_EQ(read("/dev/console"), "");
    }
}

// Interfaces
// --------------------------------------------------------------------------------------------------------------------

TEST_F(link_status, only_a_state_of_down_is_no_interface) {
    plug_in(camera);
    const struct {
        const char* state;
        int exists;
    } rows[] = {{"up\n", 1}, {"dormant\n", 1}, {"", 1}, {"dow", 1}, {"down", 0}, {"down\n", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.state);
        write("/sys/class/net/wlan0/operstate", row.state);
        EXPECT_EQ(does_if_exist("wlan0"), row.exists);
    }
}

TEST_F(link_status, missing_interface_counts_as_there) {
    plug_in(camera);
    EXPECT_EQ(does_if_exist("nowhere"), 1);
    EXPECT_EQ(does_if_exist(nullptr), 1);
}

TEST_F(link_status, flags_tell_whether_it_is_up) {
    plug_in(camera.interface_down("ra0"));
    EXPECT_EQ(does_ifup("ra0"), 0);
    EXPECT_EQ(does_ifup("wlan0"), 1);
}

TEST_F(link_status, unreadable_flags_are_told) {
    const struct {
        scene camera;
        const char* interface;
        const char* out;
    } rows[] = {
        {camera, "nowhere", "does_ifup[1483] nowhere get SIOCGIFFLAGS fails:No such device\n"},
        {camera, "name_of_16_bytes", "does_ifup[1483] name_of_16_bytes get SIOCGIFFLAGS fails:No such device\n"},
        {camera, "wlan0_and_much_more", "does_ifup[1483] wlan0_and_much_more get SIOCGIFFLAGS fails:No such device\n"},
        {no_sockets, "wlan0", "does_ifup[1476] Create socket fails:Invalid argument\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.out);
        plug_in(row.camera);
        EXPECT_EQ(watch([&] { return does_ifup(row.interface); }), (outcome{-1, row.out, ""}));
    }
}

TEST_F(link_status, wired_link_is_read_from_the_switch) {
    const scene plugged_in = scene("none").wired();
    const struct {
        const char* name;
        scene camera;
        int up;
        const char* shown = ""; // how each of the two runs ends
        const char* read = "";
    } rows[] = {
        {"plugged in", plugged_in, 1},
        {"unplugged", scene("none"), 0},
        {"no tool", plugged_in.missing_program("mii_mgr"), 0, " = 127", " = 127"},
        {"no pipe", plugged_in.fault("popen", "ENOMEM"), 0, "", " = ENOMEM"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        EXPECT_EQ(watch(probe_link).result, row.up);
        EXPECT_EQ(said(), (lines{std::string("system mii_mgr -g -p 0 -r 01") + row.shown,
                                 std::string("popen mii_mgr -g -p 0 -r 01") + row.read}));
    }
}

// Radio figures
// --------------------------------------------------------------------------------------------------------------------

TEST_F(link_status, radio_figures_come_from_the_driver) {
    join_on(camera);
    WIFI_INFO info{};
    EXPECT_EQ(watch([&] { return get_wifi_info(info); }), (outcome{0, "", ""}));
    EXPECT_EQ(said(6), (lines{"wlan0 query 0x0678", "wlan0 query 0x0679", "wlan0 query 0x0108", "wlan0 query 0x0109",
                              "wlan0 query 0x0630", "ra0 SIOCGIWSTATS"}));
    EXPECT_EQ(info.level, -40);
    EXPECT_EQ(info.noise, -95);
    EXPECT_EQ(info.oid_0108, -40);
}

TEST_F(link_status, refused_figures_have_stand_ins) {
    plug_in(camera.fault("ioctl", "EINVAL").match("query").times(0));
    WIFI_INFO info{};
    EXPECT_EQ(watch([&] { return get_wifi_info(info); }).result, 0);
    EXPECT_EQ(info.oid_0108, -99);
    EXPECT_EQ(info.oid_0109, -99);
    EXPECT_EQ(info.oid_0678, 0);
    EXPECT_EQ(info.oid_0679, 0);
    EXPECT_EQ(info.oid_0630, -99);
}

TEST_F(link_status, refused_statistics_leave_the_socket) {
    plug_in(camera.fault("ioctl", "EINVAL").match("SIOCGIWSTATS"));
    WIFI_INFO info{};
    EXPECT_EQ(watch([&] { return get_wifi_info(info); }), (outcome{-22, "", "ioctl failed: get_wifi_info\n", 1}));
}

TEST_F(link_status, socket_of_number_0_is_none_and_stays) {
    join_on(camera);
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    WIFI_INFO info{};
    EXPECT_EQ(get_wifi_info(info), -1);
    EXPECT_NE(fcntl(STDIN_FILENO, F_GETFD), -1);
    dup2(input, STDIN_FILENO);
    close(input);
}

TEST_F(link_status, figures_need_a_socket) {
    plug_in(no_sockets);
    WIFI_INFO info{};
    EXPECT_EQ(watch([&] { return get_wifi_info(info); }), (outcome{-1, "", "[get_wifi_info]open socket failed.\n"}));
}

} // namespace
