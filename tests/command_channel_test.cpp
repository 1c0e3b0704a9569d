#include "tests/camera_test.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "libwlan/libwlan.h"
#include "sim/camera.h"

namespace {

class command_channel : public camera_test {
protected:
    command_channel() { plug_in(R"({"adapter": "mediatek", "clock_ms": 1234})"); }
    wlan radio;
};

TEST_F(command_channel, debug_level_traces_commands_in_blue_and_a_quiet_one_leaves_its_console_open) {
    const std::pair<const char*, const char*> traces[] = {{"0", ""},
                                                          {"1\n", "\033[1;34m1234 iwpriv ra0 set RadioOn=1\033[0m\n"}};
    for (const auto& [level, trace] : traces) {
        write("/tmp/debug_level", level);
        radio.site_survey_v2 = 1;
        ASSERT_EQ(radio.init(), 0);
        EXPECT_EQ(radio.site_survey_v2, 0);
        radio.set_interface(text("ra0"));
        EXPECT_EQ(watch([&] { return radio.simple_set_private(text("RadioOn=1")); }).opened, *trace == '\0' ? 1 : 0);
        EXPECT_EQ(read("/dev/console"), trace);
        EXPECT_EQ(said().back(), "ra0 set RadioOn=1");
    }
    EXPECT_EQ(watch([&] {
                  return radio.ifconfig(text("ra0"), text("up")) | radio.command_set_private(text("SiteSurvey=1"));
              }),
              (outcome{0, "", "ifconfig ra0 up\niwpriv ra0 set SiteSurvey=1\n"}));
    EXPECT_EQ(said(2), (lines{"system ifconfig ra0 up", "system iwpriv ra0 set SiteSurvey=1"}));
}

TEST_F(command_channel, request_carries_the_text_without_its_terminator) {
    ASSERT_EQ(radio.init(), 0);
    const std::string command = "AuthMode=OPEN";
    radio.set_interface(text("interface_of_more_than_16_characters"));
    EXPECT_EQ(radio.simple_set_private(text(command)), -1); // no such interface
    EXPECT_EQ(std::string(radio.request.ifr_name, 16), "interface_of_mor");
    EXPECT_EQ(radio.request.u.data.pointer, command.data());
    EXPECT_EQ(radio.request.u.data.length, 13);
    EXPECT_EQ(radio.request.u.data.flags, 0);

    radio.simple_set_private(text(std::string(65536 + 5, 'x')));
    EXPECT_EQ(radio.request.u.data.length, 5); // the field has 16 bits
}

TEST_F(command_channel, release_closes_the_socket_but_never_descriptor_0) {
    ASSERT_EQ(radio.init(), 0);
    const int sock = radio.sock;
    EXPECT_EQ(radio.release(), 0);
    EXPECT_EQ(radio.sock, -1);
    EXPECT_EQ(fcntl(sock, F_GETFD), -1);

    wext realtek;
    radio.sock = realtek.sock = 0;
    EXPECT_EQ(radio.release() | realtek.release(), 0);
    struct stat still_open {};
    EXPECT_EQ(fstat(0, &still_open), 0);
}

TEST_F(command_channel, overlong_names_stay_inside_their_fields) {
    const std::string name(100, 'n');
    EXPECT_EQ(radio.set_prefix(text(name)) | radio.set_interface(text(name)), 0);
    EXPECT_EQ(std::string(radio.ifname, 64), std::string(64, 'n'));
    ASSERT_EQ(radio.init(), 0);
    radio.enable_apcli(true);
    EXPECT_EQ(std::string(radio.command), std::string(64, 'n') + "Enable=1");
    EXPECT_EQ(radio.set_interface(nullptr) + radio.set_prefix(nullptr) + radio.simple_set_private(nullptr), -3);
}

TEST_F(command_channel, init_without_a_socket_says_so) {
    plug_in(R"({"adapter": "mediatek", "faults": [{"call": "socket", "times": 0, "errno": "EMFILE"}]})");
    wext realtek;
    EXPECT_EQ(watch([&] { return radio.init() + realtek.init(true); }),
              (outcome{-2, "", "iw_socket: Too many open files\niw_socket: Too many open files\n"}));
}

} // namespace
