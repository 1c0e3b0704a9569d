// SPDX-License-Identifier: MIT
// What a program on the camera sees and reaches of the machine that it runs on: nothing of its
// network.

#include <csignal>

#include <unistd.h>

#include "tests/vcamera/launched_test.h"

namespace {

class host_test : public launched_test {
protected:
    std::string probe(const std::string& call) { return told("'" PROBE "' " + call); }
};

// apclii0 is an interface that no machine has by itself.
TEST_F(host_test, every_call_finds_the_cameras_files) {
    for (const char* call :
         {"open", "open64", "__open_2", "openat", "open/..", "open/relative", "open/chdir", "fopen", "freopen",
          "access", "faccessat", "stat", "lstat", "fstatat", "__xstat", "opendir", "realpath", "glob"})
        EXPECT_EQ(probe(call), "ok\n") << call;
}

TEST_F(host_test, tools_see_the_cameras_interfaces_only) {
    EXPECT_EQ(told("ls /sys/class/net"), "apclii0\nra0\nwlan0\n");
    EXPECT_EQ(told("sh -c 'echo /sys/class/net/*'"),
              "/sys/class/net/apclii0 /sys/class/net/ra0 /sys/class/net/wlan0\n");
    EXPECT_EQ(told("cut -d: -f1 /proc/net/dev | tail -n +3"), "   ra0\n wlan0\napclii0\n");
    EXPECT_EQ(told("cut -d. -f1,2 /proc/net/wireless | tail -n +3"),
              "   ra0: 0000   10.  -95\n wlan0: 0000   10.  -95\napclii0: 0000   10.  -95\n");
    EXPECT_EQ(run("cat /proc/self/net/dev"), 1);
    EXPECT_EQ(run("ls /sys/devices/virtual/net/lo"), 2);
}

TEST_F(host_test, every_call_lists_its_interfaces_only) {
    EXPECT_EQ(probe("if_nameindex"), "1 ra0, 2 wlan0, 3 apclii0, ok\n");
    EXPECT_EQ(probe("getifaddrs"), "ra0 up, wlan0 up, apclii0 up, ok\n");
    EXPECT_EQ(probe("if_indextoname"), "apclii0, ok\n");
    EXPECT_EQ(probe("if_nametoindex/apclii0"), "ok\n");
    EXPECT_EQ(probe("if_nametoindex/lo"), "ENODEV\n");
    EXPECT_EQ(probe("ioctl/apclii0"), "ok\n");
    EXPECT_EQ(probe("ioctl/lo"), "ENODEV\n");
    EXPECT_EQ(probe("setsockopt/apclii0"), "ok\n");
    EXPECT_EQ(probe("setsockopt/lo"), "ENODEV\n");
}

TEST_F(host_test, a_camera_without_adapter_lists_none) {
    write("/scene.json", R"({"adapter": "none"})");
    EXPECT_EQ(probe("if_nameindex"), "ok\n");
    EXPECT_EQ(probe("getifaddrs"), "ok\n");
    EXPECT_EQ(run("ls /sys/class/net"), 2);
}

TEST_F(host_test, sockets_carry_data_and_nothing_else) {
    EXPECT_EQ(probe("socket/stream"), "ok\n");
    EXPECT_EQ(probe("socket/netlink"), "EAFNOSUPPORT\n");
    EXPECT_EQ(probe("socket/packet"), "EAFNOSUPPORT\n");
    EXPECT_EQ(probe("socket/raw"), "EPERM\n");
    EXPECT_EQ(probe("connect"), "ENOENT\n");
    shell(vcamera + " log --scratch camera");
    EXPECT_TRUE(has(out, "/run/wpa_supplicant/wlan0 connect"));
}

TEST_F(host_test, a_script_changes_the_cameras_files_only) {
    const std::string token = fs::path(folder).filename();
    write("/script", "set -e\necho " + token +
                         " >/tmp/hostapd.conf\nchmod 600 /tmp/hostapd.conf\n"
                         "mv /tmp/hostapd.conf /tmp/ap_list\ncp /tmp/ap_list /tmp/hostapd.pid\nrm /tmp/hostapd.pid\n"
                         "cd /tmp\nln -s ap_list udhcpd.conf\ncat udhcpd.conf\ntruncate -s 3 ap_list\n"
                         "echo model = Dome >/etc/camera.conf\n");
    EXPECT_EQ(told("sh script"), token + "\n");
    EXPECT_EQ(read("/camera/tmp/ap_list"), token.substr(0, 3));
    EXPECT_EQ(fs::status("camera/tmp/ap_list").permissions(), fs::perms(0600));
    EXPECT_FALSE(exists("/camera/tmp/hostapd.conf"));
    EXPECT_FALSE(exists("/camera/tmp/hostapd.pid"));
    EXPECT_EQ(read("/camera/etc/camera.conf"), "model = Dome\n");
    for (const char* file : {"/tmp/hostapd.conf", "/tmp/ap_list", "/tmp/hostapd.pid", "/tmp/udhcpd.conf"}) {
        shell(std::string("cat ") + file);
        EXPECT_FALSE(has(out, token)) << file;
    }
}

TEST_F(host_test, no_call_signals_another_group) {
    const pid_t bystander = fork();
    if (bystander == 0) {
        setpgid(0, 0);
        pause();
        _exit(1);
    }
    setpgid(bystander, bystander); // whichever is first
    for (const char* call : {"kill", "killpg", "sigqueue", "tgkill"}) {
        EXPECT_EQ(probe(call + (" " + std::to_string(bystander))), "ESRCH\n") << call;
        EXPECT_EQ(waitpid(bystander, nullptr, WNOHANG), 0) << call;
    }
    kill(bystander, SIGKILL);
    waitpid(bystander, nullptr, 0);
}

} // namespace
