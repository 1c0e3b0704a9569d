// SPDX-License-Identifier: MIT
// Pid files, signals, small files, the clock and debug prints.

#include "tests/support/camera_test.h"

#include <csignal>

#include <sys/stat.h>
#include <unistd.h>

#include "libwlan/libwlan.h"

namespace {

const char* const pid_file = "/tmp/hostapd.pid";

class process : public camera_test {
protected:
    void start_daemon(const scene& camera) {
        plug_in(camera);
        write("/tmp/hostapd.conf", "interface=wlan1\nssid=x\n");
        ASSERT_EQ(std::system("hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid"), 0);
        let_daemons_start();
        pid = read(pid_file).substr(0, read(pid_file).find('\n'));
    }
    std::string pid;
};

TEST_F(process, signal_ends_a_daemon_and_its_pid_file) {
    start_daemon(scene("realtek"));
    EXPECT_EQ(send_signal_ps(pid_file, SIGTERM, 1), 0);
    EXPECT_FALSE(exists(pid_file));
    EXPECT_EQ(said(4), (lines{pid + " kill 15", pid + " kill 0", "- sleep 1 s", pid + " kill 0 = ESRCH"}));
}

TEST_F(process, unwaited_signal_leaves_the_pid_file) {
    start_daemon(scene("realtek"));
    write("/tmp/udhcpd.pid", pid);
    EXPECT_EQ(send_signal_ps("/tmp/udhcpd.pid", SIGTERM, 0), 0);
    EXPECT_TRUE(exists("/tmp/udhcpd.pid"));
    sleep(1);
    EXPECT_EQ(send_signal_ps("/tmp/udhcpd.pid", SIGTERM, 1), 0); // of a dead daemon
    EXPECT_FALSE(exists("/tmp/udhcpd.pid"));
}

TEST_F(process, stubborn_daemon_is_told_after_10_s) {
    start_daemon(scene("realtek").stubborn("hostapd"));
    EXPECT_EQ(watch([] { return send_signal_ps(pid_file, SIGTERM, 1); }),
              (outcome{-1, "Can not kill process ID " + pid + ", pidfile=/tmp/hostapd.pid, signal=15\n", ""}));
    EXPECT_TRUE(exists(pid_file));
    lines expected = {pid + " kill 15"};
    for (int poll = 0; poll < 10; ++poll)
        expected = expected + lines{pid + " kill 0", "- sleep 1 s"};
    EXPECT_EQ(said(expected.size()), expected);
}

TEST_F(process, pid_file_without_a_pid_signals_nobody) {
    plug_in(scene("realtek"));
    EXPECT_EQ(send_signal_ps(pid_file, SIGTERM, 1), 0); // there is none
    for (const char* content : {"", "\n", "none", "0", "-1", " -25\n", "99999999999999999999", "4294967295"}) {
        SCOPED_TRACE(content);
        write(pid_file, content);
        EXPECT_EQ(send_signal_ps(pid_file, SIGTERM, 1), 0);
        EXPECT_TRUE(exists(pid_file));
    }
    EXPECT_EQ(said(), lines{});
}

TEST_F(process, pid_file_is_readable_and_rewritten) {
    plug_in(scene("none"));
    const std::string path = folder + "/camera.pid";
    const mode_t old_mask = umask(0);
    EXPECT_EQ(create_pid_file(path.c_str()), 0);
    umask(old_mask);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0644));
    write("/camera.pid", "a much longer text than a process number\n");
    EXPECT_EQ(create_pid_file(path.c_str()), 0);
    EXPECT_EQ(read("/camera.pid"), std::to_string(getpid()) + "\n");
}

TEST_F(process, pid_file_locks_out_a_second_process) {
    plug_in(scene("none"));
    const std::string path = folder + "/camera.pid";
    EXPECT_EQ(create_pid_file(path.c_str()), 0);
    const auto second = [&] {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        const int result = create_pid_file(path.c_str());
        std::fflush(nullptr);
        _exit(-result);
    };
    EXPECT_EXIT(second(), testing::ExitedWithCode(1), "^Program already exists.\n$");
    EXPECT_EQ(read("/camera.pid"), std::to_string(getpid()) + "\n");
}

TEST_F(process, files_are_found_and_made) {
    plug_in(scene("none"));
    const std::string path = folder + "/flag";
    EXPECT_EQ(exist(path.c_str()), 0);
    EXPECT_EQ(touch(path.c_str()), 1);
    EXPECT_EQ(exist(path.c_str()), 1);
    const std::string nowhere = folder + "/no/flag";
    EXPECT_EQ(watch([&] { return touch(nowhere.c_str()); }),
              (outcome{0, "", "open: No such file or directory\nCan not create file " + nowhere + "\n"}));
}

TEST_F(process, clock_wraps_after_32_bits) {
    plug_in(scene("none").key("clock_ms", 2147483647));
    EXPECT_EQ(clock_time(), 2147483647U);
    sleep(2147484); // another 24.8 days, on the camera's clock
    EXPECT_EQ(clock_time(), 351U);
}

TEST_F(process, only_bit_2_of_a_debug_print_shows) {
    const struct {
        unsigned level;
        const char* shown;
    } rows[] = {{0, ""}, {1, ""}, {2, "level 2\n"}, {3, "level 3\n"}, {4, ""}};
    for (const auto& row : rows) {
        const auto print_one = [&] {
            PRINTDEBUGMSG(row.level, "%s %u\n", "level", row.level);
            return 0;
        };
        EXPECT_EQ(watch(print_one), (outcome{0, row.shown, ""}));
    }
}

TEST_F(process, debug_print_is_cut_to_255_characters) {
    const std::string long_text(300, 'x');
    const auto print_one = [&] {
        PRINTDEBUGMSG(2, "%s", long_text.c_str());
        return 0;
    };
    EXPECT_EQ(watch(print_one), (outcome{0, std::string(255, 'x'), ""}));
}

} // namespace
