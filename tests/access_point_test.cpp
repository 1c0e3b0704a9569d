#include "tests/camera_test.h"

#include "libwlan/libwlan.h"

namespace {

std::string scene(const std::string& adapter, const std::string& address = "192.168.8.1",
                  const std::string& more = "") {
    return R"({"adapter": ")" + adapter + R"(", )" + more + R"("files": {"/etc/camera.conf": [
        "[access_point]", "ssid = Camera", "auth = open", "enc = none",
        "[dhcp_server]", "address = )" +
           address + R"(", "pool_start = 192.168.8.100",
        "pool_end = 192.168.8.200", "netmask = 255.255.255.0", "[system]", "model = M", "manufacturer = F"]}})";
}

class access_point : public camera_test {
protected:
    std::string pid(const std::string& daemon) const { return read("/tmp/" + daemon + ".pid").substr(0, 7); }
};

TEST_F(access_point, start_serves_dhcp_on_the_family_s_interface) {
    const struct {
        const char* adapter;
        const char* interface;
        lines radio;
    } families[] = {
        {"mediatek",
         "ra0",
         {"ra0 set CountryRegion=0", "ra0 set RadioOn=1", "ra0 set AuthMode=OPEN", "ra0 set EncrypType=NONE",
          "ra0 set SSID=Camera", "ra0 set AutoChannelSel=2"}},
        {"realtek", "wlan1", {"system hostapd -B /tmp/hostapd.conf -P /tmp/hostapd.pid"}},
    };
    for (const auto& family : families) {
        const std::string interface = family.interface;
        plug_in(scene(family.adapter));
        EXPECT_EQ(watch([] { return run_ap_mode_base_db(); }).result, 0);
        EXPECT_EQ(said(),
                  family.radio + (lines{"system ifconfig " + interface + " 192.168.8.1 up\\n", "system udhcpd"}));
        EXPECT_EQ(read("/tmp/udhcpd.conf"), "start\t\t192.168.8.100\n"
                                            "end\t\t192.168.8.200\n"
                                            "interface\t\t" +
                                                interface +
                                                "\n"
                                                "option subnet\t255.255.255.0\n"
                                                "opt router\t\t192.168.8.1\n"
                                                "opt dns\t\t192.168.8.1\n");
        const std::string old_server = pid("udhcpd");
        const std::size_t so_far = said().size();
        EXPECT_EQ(watch([] { return run_ap_mode_base_db(); }).result, 0);
        const lines all = said();
        const lines again(all.end() - 4, all.end());
        EXPECT_GT(all.size(), so_far);
        EXPECT_EQ(again[0], old_server + " kill 15"); // after the radio, before the address
    }
}

TEST_F(access_point, stop_ends_the_servers_before_the_interface) {
    plug_in(scene("mediatek"));
    watch([] { return run_ap_mode_base_db(); });
    std::string server = pid("udhcpd");
    std::size_t before = said().size();
    EXPECT_EQ(run_stop_ap_mode(), 0);
    lines all = said();
    EXPECT_EQ(lines(all.begin() + static_cast<long>(before), all.end()),
              (lines{server + " kill 15", server + " kill 0 = ESRCH", "system ifdown ra0",
                     "system ifconfig ra0 0.0.0.0 down"}));

    plug_in(scene("realtek"));
    watch([] { return run_ap_mode_base_db(); });
    server = pid("udhcpd");
    const std::string hostapd = pid("hostapd");
    before = said().size();
    EXPECT_EQ(run_stop_ap_mode(), 0);
    all = said();
    EXPECT_EQ(lines(all.begin() + static_cast<long>(before), all.end()),
              (lines{server + " kill 15", server + " kill 0 = ESRCH", hostapd + " kill 15", hostapd + " kill 0 = ESRCH",
                     "system ifdown wlan1", "system ifconfig wlan1 0.0.0.0 down"}));
    EXPECT_FALSE(exists("/tmp/udhcpd.pid"));
    EXPECT_FALSE(exists("/tmp/hostapd.pid"));
}

TEST_F(access_point, stop_goes_on_whatever_the_daemons_and_tools_do) {
    plug_in(scene("realtek", "192.168.8.1",
                  R"("stubborn": ["udhcpd", "hostapd"], "missing_programs": ["ifdown", "ifconfig"], )"));
    watch([] { return run_ap_mode_base_db(); });
    const outcome stop = watch([] { return run_stop_ap_mode(); });
    EXPECT_EQ(stop.result, 0);
    EXPECT_EQ(said().back(), "system ifconfig wlan1 0.0.0.0 down = 127");
    EXPECT_EQ(clock_time(), 20000U); // ten seconds for each daemon
}

TEST_F(access_point, address_command_is_31_characters_long_at_most) {
    plug_in(scene("realtek", "192.168.100.100"));
    watch([] { return run_ap_mode_base_db(); });
    const lines all = said();
    EXPECT_EQ(*(all.end() - 2),
              "system ifconfig wlan1 192.168.100.100 "); // it lost its tail
}

TEST_F(access_point, failed_start_leaves_the_dhcp_server_alone) {
    plug_in(scene("mediatek", "192.168.8.1",
                  R"("faults": [{"call": "ioctl", "match": "AuthMode", "nth": 2, "errno": "EIO"}], )"));
    watch([] { return run_ap_mode_base_db(); });
    EXPECT_EQ(watch([] { return run_ap_mode_base_db(); }).result, -1);
    EXPECT_EQ(said().back(), "ra0 set AuthMode=OPEN = EIO");

    plug_in(scene("mediatek", "not an address"));
    EXPECT_EQ(watch([] { return run_ap_mode_base_db(); }).result, -1);
    EXPECT_EQ(said().back(), "ra0 set AutoChannelSel=2");
}

TEST_F(access_point, unwritable_configuration_is_told_and_the_start_goes_on) {
    plug_in(scene("mediatek", "192.168.8.1",
                  R"("faults": [{"call": "open", "match": "/tmp/udhcpd.conf", "errno": "EROFS"}], )"));
    const outcome start = watch([] { return run_ap_mode_base_db(); });
    EXPECT_EQ(start.result, 0);
    EXPECT_EQ(start.err.substr(0, start.err.find("udhcpd:")), "Open /tmp/udhcpd.conf fail: Read-only file system\n");
    EXPECT_EQ(said().back().substr(0, 13), "system udhcpd");
}

} // namespace
