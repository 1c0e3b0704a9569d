// SPDX-License-Identifier: MIT
// What the MediaTek driver of the virtual camera takes, refuses and gives, request by request.

#include "tests/support/camera_test.h"
#include "tests/support/mtk_driver.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/syscall.h>

#include "libwlan/libwlan.h"

namespace {

const scene camera = scene("mediatek").air(access_point("Net").channel(6).wpa2("passphrase").pressed_button());

using mtk_driver_test = camera_test;

TEST_F(mtk_driver_test, set_takes_a_key_where_it_belongs) {
    const std::string digits(64, '0');
    const struct {
        const char* interface;
        std::string text;
        int error;
        int beyond = 0; // bytes counted beyond the text
    } rows[] = {
        {"wlan0", "ApCliSsid=Net", 0},
        {"wlan0", "ApCliSsid=Net", EINVAL, 1}, // its NUL
        {"wlan0", std::string("ApCliSsid=N\0t", 13), EINVAL},
        {"wlan0", "ApCliSsid=", EINVAL},
        {"wlan0", "ApCliSsid", EINVAL},
        {"wlan0", "", EINVAL},
        {"ra0", "ApCliSsid=Net", EINVAL},
        {"nowhere", "ApCliSsid=Net", ENODEV},
        {"ra0", "SSID=Net", 0},
        {"wlan0", "SSID=Net", EINVAL}, // the access point's
        {"apclii0", "AuthMode=OPEN", EINVAL},
        {"wlan0", "WPAPSK=passphrase", EINVAL},
        {"ra0", "AutoChannelSel=2", 0},
        {"wlan0", "AutoChannelSel=2", EINVAL},
        {"wlan0", "CountryRegion=5", 0}, // the chip's
        {"wlan0", "WpaMixPairCipher=WPA_TKIP_WPA2_AES", 0},
        {"ra0", "WPAPSK=" + digits, 0},
        {"ra0", "WPAPSK=" + digits + "0", EINVAL},
        {"ra0", "WPAPSK=x" + digits.substr(1), EINVAL},
        {"ra0", "WscGetConf=1", EINVAL}, // an access point asks nobody
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.interface + (" " + row.text));
        plug_in(camera);
        EXPECT_EQ(mtk_driver().set(row.interface, row.text, row.text.size() + static_cast<std::size_t>(row.beyond)),
                  row.error);
    }
}

TEST_F(mtk_driver_test, figures_and_registers_have_their_length) {
    const struct {
        const char* name;
        int request;
        std::string data;
        int flags;
        int error;
    } rows[] = {
        {"status", 1, "1234", 0x0751, 0},
        {"status of eight bytes", 1, "12345678", 0x0751, EINVAL},
        {"status of three bytes", 1, "123", 0x0751, EINVAL},
        {"unknown figure", 1, "1234", 0x0752, EINVAL},
        {"register", 3, {"66\0", 3}, 0, 0},
        {"register without its NUL", 3, "66", 0, EINVAL},
        {"register and more", 3, {"66\0x", 4}, 0, EINVAL},
        {"nothing", 3, "", 0, EINVAL},
        {"survey with flags", 13, std::string(64, ' '), 1, EINVAL},
        {"unknown request", 4, "1234", 0, EINVAL},
    };
    plug_in(camera);
    const int sock = socket(AF_INET, SOCK_DGRAM, 0);
    for (const auto& row : rows) {
        std::string room(256, '\0'); // a register's answer is longer than its name
        row.data.copy(room.data(), row.data.size());
        EXPECT_EQ(mtk_driver::ask(sock, "wlan0", row.request, room.data(), row.data.size(), row.flags), row.error)
            << row.name;
    }
    close(sock);
}

/// @return the errno of a request through a descriptor; 0 when it is answered.
int error_through(int file, unsigned long code) {
    char room[32] = "66";
    iwreq request{};
    std::string("wlan0").copy(request.ifr_name, IFNAMSIZ);
    request.u.data.pointer = room;
    request.u.data.length = 3;
    return ioctl(file, code, &request) < 0 ? errno : 0;
}

TEST_F(mtk_driver_test, requests_come_through_sockets_only) {
    int pipes[2] = {-1, -1};
    ASSERT_EQ(pipe(pipes), 0);
    const int files[] = {pipes[0], open("/dev/null", O_RDWR | O_CLOEXEC)};
    const unsigned long codes[] = {SIOCGIFFLAGS,         SIOCGIWAP,           SIOCGIWFREQ,         SIOCGIWSTATS,
                                   SIOCIWFIRSTPRIV + 1,  SIOCIWFIRSTPRIV + 2, SIOCIWFIRSTPRIV + 3, SIOCIWFIRSTPRIV + 9,
                                   SIOCIWFIRSTPRIV + 13, SIOCSIWSCAN};
    plug_in(camera);
    for (const int file : files) {
        for (const unsigned long code : codes) {
            EXPECT_EQ(error_through(file, code), ENOTTY) << code;
            iwreq request{};
            EXPECT_EQ(syscall(SYS_ioctl, file, code, &request), -1); // nor does the kernel take it
            EXPECT_EQ(errno, ENOTTY);
        }
        close(file);
    }
    close(pipes[1]);
    EXPECT_EQ(error_through(pipes[0], SIOCGIWAP), EBADF);
    EXPECT_EQ(said().back(), "wlan0 SIOCGIWAP = EBADF");

    const int any_family = socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(error_through(any_family, SIOCGIWAP), 0);
    close(any_family);
}

TEST_F(mtk_driver_test, survey_is_read_where_and_when_it_is_over) {
    const struct {
        const char* name;
        const char* asked;
        int milliseconds;
        const char* read;
        int rows;
    } rows[] = {
        {"at once", "ra0", 0, "ra0", 0},
        {"a moment too early", "ra0", 2999, "ra0", 0},
        {"when it is over", "ra0", 3000, "ra0", 1},
        {"later", "ra0", 60000, "ra0", 1},
        {"on an AP-client", "wlan0", 4000, "wlan0", 1},
        {"of another interface", "ra0", 4000, "wlan0", 0},
        {"of the other AP-client", "wlan0", 4000, "apclii0", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera);
        const mtk_driver driver;
        EXPECT_EQ(driver.set(row.asked, "SiteSurvey=1"), 0);
        usleep(static_cast<useconds_t>(row.milliseconds) * 1000);
        const std::string table = driver.text(row.read, 13);
        EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 1 + row.rows) << table; // and the header
    }
}

TEST_F(mtk_driver_test, next_survey_empties_the_table_of_the_last) {
    plug_in(camera);
    const mtk_driver driver;
    for (int round = 0; round < 2; ++round) {
        driver.set("ra0", "SiteSurvey=1");
        EXPECT_EQ(driver.text("ra0", 13).find("\"Net\""), std::string::npos);
        sleep(4);
        EXPECT_NE(driver.text("ra0", 13).find("\"Net\""), std::string::npos);
    }
}

TEST_F(mtk_driver_test, survey_needs_its_interface_up) {
    plug_in(camera.interface_down("ra0"));
    EXPECT_EQ(mtk_driver().set("ra0", "SiteSurvey=1"), ENETDOWN);
    EXPECT_EQ(mtk_driver().set("wlan0", "SiteSurvey=1"), 0);
}

TEST_F(mtk_driver_test, tool_s_counted_nul_is_taken_off) {
    plug_in(camera);
    EXPECT_EQ(std::system("iwpriv ra0 set SiteSurvey=1"), 0);
    sleep(4);
    EXPECT_NE(mtk_driver().text("ra0", 13).find("\"Net\""), std::string::npos);
}

} // namespace
