// SPDX-License-Identifier: MIT
// The stored access point with its DHCP server, and how it is stopped.

#include "tests/support/camera_test.h"

#include "libwlan/libwlan.h"

namespace {

/// A camera with a stored access point, whose DHCP server has this address.
scene camera(const char* adapter, const std::string& address = "192.168.8.1") {
    return scene(adapter).stored(
        stored_settings().access_point("Camera", "open", "none").dhcp_server(address).system("M", "F"));
}

struct family {
    const char* name;
    std::string interface;
    lines radio; // what starting the access point says to it
    lines service = {"system ifconfig " + interface + " 192.168.8.1 up\\n", "system udhcpd"};
    lines down = {"system ifdown " + interface, "system ifconfig " + interface + " 0.0.0.0 down"};
};
const lines mtk_radio = {"ra0 set CountryRegion=0", "ra0 set RadioOn=1",   "ra0 set AuthMode=OPEN",
                         "ra0 set EncrypType=NONE", "ra0 set SSID=Camera", "ra0 set AutoChannelSel=2"};
const family families[] = {
    {"mediatek", "ra0", mtk_radio},
    {"realtek", "wlan1", {"system hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid"}},
};

class access_point_service : public camera_test {
protected:
    static outcome start() { return watch(run_ap_mode_base_db); }
    static outcome stop() { return watch(run_stop_ap_mode); }

    /// What ending a running daemon says.
    [[nodiscard]] lines ending(const std::string& daemon) const {
        const std::string pid = read("/tmp/" + daemon + ".pid").substr(0, 7);
        return {pid + " kill 15", pid + " kill 0", "- sleep 1 s", pid + " kill 0 = ESRCH"};
    }
};

TEST_F(access_point_service, gives_out_addresses) {
    for (const family& family : families) {
        SCOPED_TRACE(family.name);
        plug_in(camera(family.name));
        EXPECT_EQ(start().result, 0);
        EXPECT_EQ(said(), family.radio + family.service);
        EXPECT_EQ(read("/tmp/udhcpd.conf"), "start\t\t192.168.8.100\nend\t\t192.168.8.200\ninterface\t\t" +
                                                family.interface +
                                                "\noption subnet\t255.255.255.0\nopt router\t\t192.168.8.1\n"
                                                "opt dns\t\t192.168.8.1\n");
    }
}

TEST_F(access_point_service, started_again_replaces_its_server) {
    for (const family& family : families) {
        SCOPED_TRACE(family.name);
        plug_in(camera(family.name));
        start();
        let_daemons_start();
        const lines ended = ending("udhcpd");
        EXPECT_EQ(start().result, 0);
        EXPECT_EQ(said(6), ended + family.service); // after the radio, before the address
    }
}

TEST_F(access_point_service, stop_ends_servers_first) {
    for (const family& family : families) {
        SCOPED_TRACE(family.name);
        plug_in(camera(family.name));
        start();
        let_daemons_start();
        lines expected = said() + ending("udhcpd");
        if (exists("/tmp/hostapd.pid"))
            expected = expected + ending("hostapd");
        expected = expected +
                   lines{"system ifdown " + family.interface, "system ifconfig " + family.interface + " 0.0.0.0 down"};
        EXPECT_EQ(stop().result, 0);
        EXPECT_EQ(said(), expected);
        EXPECT_FALSE(exists("/tmp/udhcpd.pid"));
        EXPECT_FALSE(exists("/tmp/hostapd.pid"));
    }
}

TEST_F(access_point_service, stop_goes_on_whatever_fails) {
    plug_in(
        camera("realtek").stubborn("udhcpd").stubborn("hostapd").missing_program("ifdown").missing_program("ifconfig"));
    start();
    let_daemons_start();
    const std::uint32_t started = clock_time();
    EXPECT_EQ(stop().result, 0);
    EXPECT_EQ(said(2), (lines{"system ifdown wlan1 = 127", "system ifconfig wlan1 0.0.0.0 down = 127"}));
    EXPECT_EQ(clock_time() - started, 20000U); // ten seconds for each daemon
}

TEST_F(access_point_service, address_command_is_cut_at_31_bytes) {
    plug_in(camera("realtek", "192.168.100.100"));
    EXPECT_EQ(start().result, 0);
    EXPECT_EQ(said(2), (lines{"system ifconfig wlan1 192.168.100.100 ", "system udhcpd"})); // it lost its tail
}

TEST_F(access_point_service, refused_start_keeps_the_old_server) {
    plug_in(camera("mediatek").fault("ioctl", "EIO").match("AuthMode").nth(2));
    EXPECT_EQ(start().result, 0);
    EXPECT_EQ(start().result, -1);
    EXPECT_EQ(said().back(), "ra0 set AuthMode=OPEN = EIO");
}

TEST_F(access_point_service, unreadable_dhcp_settings_fail) {
    plug_in(camera("mediatek", "not an address"));
    EXPECT_EQ(start().result, -1);
    EXPECT_EQ(said(), mtk_radio);
}

TEST_F(access_point_service, unwritable_server_file_is_told_only) {
    plug_in(camera("mediatek").fault("open", "EROFS").match("/tmp/udhcpd.conf"));
    const outcome run = start();
    EXPECT_EQ(run.err.rfind("Open /tmp/udhcpd.conf fail: Read-only file system\n", 0), 0U);
    EXPECT_EQ(said().back().substr(0, 13), "system udhcpd");
}

TEST_F(access_point_service, server_file_needs_all_it_is_made_of) {
    plug_in(camera("mediatek").fault("open", "EROFS").match("/tmp/udhcpd.conf"));
    const _dhcp_server_setting setting{};
    EXPECT_EQ(create_udhcpd_config(nullptr, &setting), -1);
    EXPECT_EQ(create_udhcpd_config("ra0", nullptr), -1);
    EXPECT_EQ(watch([&] { return create_udhcpd_config("ra0", &setting); }).result, -1); // no file
    EXPECT_FALSE(exists("/tmp/udhcpd.conf"));
}

} // namespace
