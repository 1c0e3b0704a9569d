#include "tests/camera_test.h"

#include <tuple>

#include "libwlan/libwlan.h"

namespace {

std::string scene(const std::string& adapter, const std::string& more = "",
                  const std::string& address = "192.168.8.1") {
    return R"({"adapter": ")" + adapter + R"(", )" + more + R"("files": {"/etc/camera.conf": [
        "[access_point]", "ssid = Camera", "auth = open", "enc = none",
        "[dhcp_server]", "address = )" +
           address + R"(", "pool_start = 192.168.8.100",
        "pool_end = 192.168.8.200", "netmask = 255.255.255.0", "[system]", "model = M", "manufacturer = F"]}})";
}

class access_point : public camera_test {
protected:
    static outcome start() { return watch(run_ap_mode_base_db); }
    static outcome stop() { return watch(run_stop_ap_mode); }
    std::string pid(const std::string& daemon) const { return read("/tmp/" + daemon + ".pid").substr(0, 7); }
};

TEST_F(access_point, serves_dhcp_on_the_family_s_interface_and_stops_its_servers_before_it) {
    const lines mtk = {"ra0 set CountryRegion=0", "ra0 set RadioOn=1",   "ra0 set AuthMode=OPEN",
                       "ra0 set EncrypType=NONE", "ra0 set SSID=Camera", "ra0 set AutoChannelSel=2"};
    const std::tuple<const char*, std::string, lines> families[] = {
        {"mediatek", "ra0", mtk},
        {"realtek", "wlan1", {"system hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid"}},
    };
    for (const auto& [adapter, interface, radio] : families) {
        plug_in(scene(adapter));
        EXPECT_EQ(start().result, 0);
        const lines served = {"system ifconfig " + interface + " 192.168.8.1 up\\n", "system udhcpd"};
        EXPECT_EQ(said(), radio + served);
        EXPECT_EQ(read("/tmp/udhcpd.conf"), "start\t\t192.168.8.100\nend\t\t192.168.8.200\ninterface\t\t" + interface +
                                                "\noption subnet\t255.255.255.0\nopt router\t\t192.168.8.1\n"
                                                "opt dns\t\t192.168.8.1\n");
        lines ended = {pid("udhcpd") + " kill 15", pid("udhcpd") + " kill 0 = ESRCH"};
        EXPECT_EQ(start().result, 0);
        EXPECT_EQ(said(4), ended + served); // after the radio, before the address

        ended = {pid("udhcpd") + " kill 15", pid("udhcpd") + " kill 0 = ESRCH"};
        if (exists("/tmp/hostapd.pid"))
            ended = ended + lines{pid("hostapd") + " kill 15", pid("hostapd") + " kill 0 = ESRCH"};
        const lines before = said();
        EXPECT_EQ(stop().result, 0);
        const lines down = {"system ifdown " + interface, "system ifconfig " + interface + " 0.0.0.0 down"};
        EXPECT_EQ(said(), before + ended + down);
        EXPECT_FALSE(exists("/tmp/udhcpd.pid") || exists("/tmp/hostapd.pid"));
    }
}

TEST_F(access_point, stop_goes_on_whatever_the_daemons_and_tools_do) {
    plug_in(scene("realtek", R"("stubborn": ["udhcpd", "hostapd"], "missing_programs": ["ifdown", "ifconfig"], )"));
    start();
    EXPECT_EQ(stop().result, 0);
    EXPECT_EQ(said().back(), "system ifconfig wlan1 0.0.0.0 down = 127");
    EXPECT_EQ(clock_time(), 20000U); // ten seconds for each daemon
}

TEST_F(access_point, address_command_is_31_characters_long_at_most) {
    plug_in(scene("realtek", "", "192.168.100.100"));
    start();
    EXPECT_EQ(said(2)[0], "system ifconfig wlan1 192.168.100.100 "); // it lost its tail
}

TEST_F(access_point, failed_start_leaves_the_dhcp_server_alone) {
    plug_in(scene("mediatek", R"("faults": [{"call": "ioctl", "match": "AuthMode", "nth": 2, "errno": "EIO"}], )"));
    EXPECT_EQ(start().result, 0);
    EXPECT_EQ(start().result, -1);
    EXPECT_EQ(said().back(), "ra0 set AuthMode=OPEN = EIO");

    plug_in(scene("mediatek", "", "not an address"));
    EXPECT_EQ(start().result, -1);
    EXPECT_EQ(said().back(), "ra0 set AutoChannelSel=2");
}

TEST_F(access_point, unwritable_configuration_is_told_and_the_start_goes_on) {
    plug_in(scene("mediatek", R"("faults": [{"call": "open", "match": "/tmp/udhcpd.conf", "errno": "EROFS"}], )"));
    EXPECT_EQ(start().err.rfind("Open /tmp/udhcpd.conf fail: Read-only file system\n", 0), 0U);
    EXPECT_EQ(said().back().substr(0, 13), "system udhcpd");
}

} // namespace
