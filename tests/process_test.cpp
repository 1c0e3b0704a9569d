#include "tests/camera_test.h"

#include <csignal>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "libwlan/libwlan.h"

namespace {

const char* const pid_file = "/tmp/hostapd.pid";

class process : public camera_test {
protected:
    void start_daemon(const std::string& scene) {
        plug_in(scene);
        write("/tmp/hostapd.conf", "interface=wlan1\nssid=x\n");
        ASSERT_EQ(std::system("hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid"), 0);
        pid = read(pid_file).substr(0, read(pid_file).find('\n'));
    }
    std::string pid;
};

TEST_F(process, signal_ends_a_daemon_and_removes_its_pid_file) {
    start_daemon(R"({"adapter": "realtek"})");
    EXPECT_EQ(send_signal_ps(pid_file, SIGTERM, 1), 0);
    EXPECT_FALSE(exists(pid_file));
    EXPECT_EQ(said().at(1), pid + " kill 15");

    start_daemon(R"({"adapter": "realtek"})");
    write("/tmp/udhcpd.pid", pid);
    EXPECT_EQ(send_signal_ps("/tmp/udhcpd.pid", SIGTERM, 0), 0);
    EXPECT_TRUE(exists("/tmp/udhcpd.pid")); // not waiting leaves the file to the caller
    EXPECT_EQ(send_signal_ps("/tmp/udhcpd.pid", SIGTERM, 1), 0);
    EXPECT_FALSE(exists("/tmp/udhcpd.pid")); // nor does a dead daemon's stay
}

TEST_F(process, daemon_that_will_not_die_is_reported_after_ten_seconds) {
    start_daemon(R"({"adapter": "realtek", "stubborn": ["hostapd"]})");
    EXPECT_EQ(watch([] { return send_signal_ps(pid_file, SIGTERM, 1); }),
              (outcome{-1, "Can not kill process ID " + pid + ", pidfile=/tmp/hostapd.pid, signal=15\n", ""}));
    EXPECT_TRUE(exists(pid_file));
    lines expected = {"system hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid", pid + " kill 15"};
    for (int poll = 0; poll < 10; ++poll)
        expected = expected + lines{pid + " kill 0", "- sleep 1 s"};
    EXPECT_EQ(said(), expected);
}

TEST_F(process, pid_file_that_names_nobody_signals_nobody) {
    plug_in(R"({"adapter": "realtek"})");
    EXPECT_EQ(send_signal_ps(pid_file, SIGTERM, 1), 0); // there is none
    for (const char* content : {"", "\n", "none", "0", "-1", " -25\n", "99999999999999999999", "4294967295"}) {
        SCOPED_TRACE(content);
        write(pid_file, content);
        EXPECT_EQ(send_signal_ps(pid_file, SIGTERM, 1), 0);
        EXPECT_TRUE(exists(pid_file));
    }
    EXPECT_EQ(said(), lines{});
}

TEST_F(process, pid_file_locks_out_a_second_process) {
    plug_in(R"({"adapter": "none"})");
    const std::string path = folder + "/camera.pid";
    const mode_t old_mask = umask(0);
    EXPECT_EQ(create_pid_file(path.c_str()), 0);
    umask(old_mask);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0644));
    write("/camera.pid", "a much longer text than a process number\n");
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
    plug_in(R"({"adapter": "none"})");
    const std::string path = folder + "/flag";
    EXPECT_EQ(exist(path.c_str()), 0);
    EXPECT_EQ(touch(path.c_str()), 1);
    EXPECT_EQ(exist(path.c_str()), 1);
    const std::string nowhere = folder + "/no/flag";
    EXPECT_EQ(watch([&] { return touch(nowhere.c_str()); }),
              (outcome{0, "", "open: No such file or directory\nCan not create file " + nowhere + "\n"}));
}

TEST_F(process, clock_wraps_after_32_bits_of_milliseconds) {
    plug_in(R"({"adapter": "none", "clock_ms": 2147483647})");
    EXPECT_EQ(clock_time(), 2147483647U);
    sleep(2147484); // another 24.8 days, on the camera's clock
    EXPECT_EQ(clock_time(), 351U);
}

TEST_F(process, debug_prints_are_masked_and_cut) {
    const std::string long_text(300, 'x');
    const auto print_all = [&] {
        for (const unsigned int level : {0U, 1U, 4U, 3U})
            PRINTDEBUGMSG(level, "%s %u\n", "level", level);
        PRINTDEBUGMSG(2, "%s", long_text.c_str());
        return 0;
    };
    EXPECT_EQ(watch(print_all), (outcome{0, "level 3\n" + std::string(255, 'x'), ""}));
}

} // namespace
