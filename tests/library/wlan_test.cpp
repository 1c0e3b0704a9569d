// SPDX-License-Identifier: MIT
// How a MediaTek driver's object is opened and closed, and how commands reach the driver.

#include "tests/support/camera_test.h"

#include <fcntl.h>

#include "libwlan/libwlan.h"

namespace {

const scene camera = scene("mediatek").key("clock_ms", 1234);

class mtk_commands : public camera_test {
protected:
    void start_at(const char* debug_level) {
        plug_in(camera);
        write("/tmp/debug_level", debug_level);
        ASSERT_EQ(radio.init(), 0);
        radio.set_interface(text("ra0"));
    }
    wlan radio;
};

TEST_F(mtk_commands, debug_level_traces_them_in_blue) {
    start_at("1\n");
    EXPECT_EQ(watch([&] { return radio.simple_set_private(text("RadioOn=1")); }), (outcome{0, "", "", 0}));
    EXPECT_EQ(said(), lines{"ra0 set RadioOn=1"});
    EXPECT_EQ(read("/dev/console"), "\033[1;34m1234 iwpriv ra0 set RadioOn=1\033[0m\n");
    EXPECT_EQ(radio.console, nullptr); // it is closed
}

TEST_F(mtk_commands, quiet_one_leaves_its_console_open) {
    start_at("0");
    EXPECT_EQ(watch([&] { return radio.simple_set_private(text("RadioOn=1")); }), (outcome{0, "", "", 1}));
    EXPECT_EQ(said(), lines{"ra0 set RadioOn=1"});
    EXPECT_EQ(read("/dev/console"), "");
    EXPECT_NE(radio.console, nullptr);
}

TEST_F(mtk_commands, tools_are_shown_at_a_debug_level) {
    start_at("1");
    EXPECT_EQ(watch([&] { return radio.ifconfig(text("ra0"), text("up")); }), (outcome{0, "", "ifconfig ra0 up\n"}));
    EXPECT_EQ(watch([&] { return radio.command_set_private(text("SiteSurvey=1")); }),
              (outcome{0, "", "iwpriv ra0 set SiteSurvey=1\n"}));
    EXPECT_EQ(said(), (lines{"system ifconfig ra0 up", "system iwpriv ra0 set SiteSurvey=1"}));
}

TEST_F(mtk_commands, only_ifconfig_s_status_counts) {
    plug_in(camera.missing_program("ifconfig").missing_program("iwpriv"));
    radio.set_interface(text("ra0"));
    EXPECT_EQ(watch([&] { return radio.ifconfig(text("ra0"), text("up")); }).result, 127 << 8);
    EXPECT_EQ(watch([&] { return radio.command_set_private(text("SiteSurvey=1")); }).result, 0);
    EXPECT_EQ(radio.ifconfig(nullptr, text("up")), -1);
    EXPECT_EQ(radio.ifconfig(text("ra0"), nullptr), -1);
}

TEST_F(mtk_commands, overlong_ones_of_tools_are_cut) {
    start_at("0");
    const std::string overlong(600, 'x');
    watch([&] { return radio.ifconfig(text("ra0"), text(overlong)); });
    EXPECT_EQ(said().back(), "system ifconfig ra0 " + std::string(63 - 13, 'x') + " = 1");
    watch([&] { return radio.command_set_private(text(overlong)); });
    EXPECT_EQ(said().back(), "system iwpriv ra0 set " + std::string(511 - 15, 'x') + " = 255");
}

TEST_F(mtk_commands, request_has_no_terminator) {
    start_at("0");
    const std::string command = "AuthMode=OPEN";
    EXPECT_EQ(radio.simple_set_private(text(command)), 0);
    EXPECT_EQ(radio.request.u.data.pointer, command.data());
    EXPECT_EQ(radio.request.u.data.length, 13);
    EXPECT_EQ(radio.request.u.data.flags, 0);
}

TEST_F(mtk_commands, request_of_64_kib_loses_them) {
    start_at("0");
    const std::string command(65536 + 5, 'x');
    radio.simple_set_private(text(command));
    EXPECT_EQ(radio.request.u.data.length, 5); // the field has 16 bits
}

TEST_F(mtk_commands, driver_sees_16_bytes_of_the_interface) {
    const struct {
        const char* name;
        std::string seen;
    } rows[] = {
        {"name_of_15_byte", std::string("name_of_15_byte\0", 16)},
        {"name_of_16_bytes", "name_of_16_bytes"},
        {"name_of_17_bytes_", "name_of_17_bytes"},
    };
    start_at("0");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        radio.set_interface(text(row.name));
        EXPECT_EQ(radio.simple_set_private(text("RadioOn=1")), -1); // no such interface
        EXPECT_EQ(std::string(radio.request.ifr_name, 16), row.seen);
    }
}

TEST_F(mtk_commands, overlong_names_stay_inside_their_fields) {
    start_at("0");
    const std::string name(100, 'n');
    EXPECT_EQ(radio.set_prefix(text(name)), 0);
    EXPECT_EQ(radio.set_interface(text(name)), 0);
    EXPECT_EQ(std::string(radio.ifname, 64), std::string(64, 'n'));
    radio.enable_apcli(true);
    EXPECT_EQ(std::string(radio.command), std::string(64, 'n') + "Enable=1");
}

TEST_F(mtk_commands, no_text_is_refused) {
    start_at("0");
    EXPECT_EQ(radio.set_interface(nullptr), -1);
    EXPECT_EQ(radio.set_prefix(nullptr), -1);
    EXPECT_EQ(radio.simple_set_private(nullptr), -1);
    EXPECT_EQ(said(), lines{});
}

TEST_F(mtk_commands, init_forgets_the_table_s_version) {
    plug_in(camera);
    radio.site_survey_v2 = 1;
    EXPECT_EQ(radio.init(), 0);
    EXPECT_EQ(radio.site_survey_v2, 0);
}

TEST_F(mtk_commands, release_closes_the_socket) {
    plug_in(camera);
    ASSERT_EQ(radio.init(), 0);
    const int sock = radio.sock;
    EXPECT_EQ(radio.release(), 0);
    EXPECT_EQ(radio.sock, -1);
    EXPECT_EQ(fcntl(sock, F_GETFD), -1);
}

TEST_F(mtk_commands, release_never_closes_descriptor_0) {
    radio.sock = 0;
    EXPECT_EQ(radio.release(), 0);
    EXPECT_EQ(radio.sock, -1);
    EXPECT_NE(fcntl(0, F_GETFD), -1);
}

TEST_F(mtk_commands, init_without_a_socket_says_so) {
    plug_in(camera.fault("socket", "EMFILE"));
    EXPECT_EQ(watch([&] { return radio.init(); }), (outcome{-1, "", "iw_socket: Too many open files\n"}));
}

} // namespace
