#include "tests/camera_test.h"

#include <tuple>

#include "libwlan/libwlan.h"

namespace {

/// A station's camera.
const std::string camera = R"({"adapter": "mediatek", "clock_ms": 5, "air": [{"ssid": "Net",
    "bssid": "02:00:00:00:00:01", "channel": 6, "security": "open", "level": -40}])";
const std::string sound = camera + "}";

std::string failing(const std::string& fault) {
    return camera + R"(, "faults": [{"times": 0, "errno": "EINVAL", "call": )" + fault + "}]}";
}
const std::string no_sockets = failing(R"("socket")");
const std::string no_address = failing(R"("ioctl", "match": "SIOCGIWAP")");
const std::string no_freq = failing(R"("ioctl", "match": "SIOCGIWFREQ")");

class link_status : public camera_test {
protected:
    /// Joins "Net", unless the camera lacks sockets.
    void join(const std::string& scene) {
        plug_in(scene);
        watch([] {
            return do_infra_mode_mtk(text("Net"), text("02:00:00:00:00:01"), AUTH_OPEN, ENC_NONE, nullptr, 6, 1);
        });
    }
};

TEST_F(link_status, association_is_what_the_access_point_address_says) {
    const std::pair<unsigned char, int> addresses[] = {{0x00, 0}, {0xFF, 0}, {0x44, 0}, {0x45, 1}};
    for (const auto& [byte, usable] : addresses) {
        sockaddr addr{};
        std::fill_n(addr.sa_data, 6, static_cast<char>(byte));
        EXPECT_EQ(does_have_vaild_mac(&addr), usable) << byte;
        addr.sa_data[5] = 1;
        EXPECT_EQ(does_have_vaild_mac(&addr), 1);
    }
    join(sound);
    EXPECT_EQ(does_wifi_associated("wlan0"), 1);
    EXPECT_EQ(does_wifi_associated("ra0"), 0);
}

TEST_F(link_status, channel_of_a_station) {
    const std::tuple<std::string, const char*, outcome> cases[] = {
        {sound, "wlan0", {6, "", "get_wifi_channel[1329] associ = true\nget_wifi_channel[1341] wrq.u.freq.m=6\n"}},
        {sound, "apclii0", {-1, "", "get_wifi_channel[1345] return -1\n"}},
        {sound, nullptr, {-1, "", "[get_wifi_channel]interface should not be null\n"}},
        {no_sockets, "wlan0", {-1, "", "[get_wifi_channel]open socket failed.\n"}},
        {no_address, "wlan0", {-1, "", "[get_wifi_channel]SIOCGIWAP failed.\nget_wifi_channel[1345] return -1\n"}},
        {no_freq, "wlan0", {-1, "", "get_wifi_channel[1329] associ = true\nSIOCGIWFREQ:: Invalid argument\n", 1}},
    };
    for (const auto& [scene, name, answer] : cases) {
        join(scene);
        EXPECT_EQ(watch([asked = name] { return get_wifi_channel(asked); }), answer);
    }
    join(sound);
    wlan radio;
    EXPECT_EQ(watch([&] { return radio.init() + radio.set_current_channel(); }).result, 0);
    EXPECT_EQ(said().back(), "wlan0 set Channel=6");
    plug_in(no_sockets);
    EXPECT_EQ(watch([] { return does_wifi_associated(nullptr) + does_wifi_associated("wlan0"); }),
              (outcome{0, "",
                       "[does_wifi_associated]interface should not be null\n"
                       "[does_wifi_associated]open socket failed.\n"}));
}

TEST_F(link_status, current_channel_asks_without_an_association) {
    const std::tuple<std::string, const char*, outcome, std::string> cases[] = {
        {sound, "wlan0", {6, "get_current_wifi_channel[1387] wrq.u.freq.m=6\n", "", 1}, "wrq.u.freq.m=6"},
        {sound, nullptr, {-1, "", ""}, "interface should not be null"},
        {no_sockets, "wlan0", {-1, "", ""}, "open socket failed"},
        {no_freq, "wlan0", {-1, "", "SIOCGIWFREQ:: Invalid argument\n", 1}, "ioctl SIOCGIWFREQ fail: Invalid argument"},
    };
    for (const auto& [scene, name, answered, console] : cases)
        for (const bool traced : {false, true}) {
            join(scene);
            write("/tmp/debug_level", traced ? "4" : "0");
            outcome answer = answered;
            answer.opened += traced ? 0 : 1; // a quiet console
            EXPECT_EQ(watch([asked = name] { return get_current_wifi_channel(asked); }), answer);
            const std::string trace = "\033[1;34m5 [get_current_wifi_channel] " + console + "\033[0m\n";
            EXPECT_EQ(read("/dev/console"), traced ? trace : "");
        }
}

TEST_F(link_status, interface_flags_and_operational_state) {
    plug_in(R"({"adapter": "mediatek", "interfaces": {"ra0": {"state": "down"}, "wlan0": {"state": "up"}}})");
    EXPECT_EQ(does_if_exist("nowhere"), 1); // what is not there counts as there
    EXPECT_EQ(does_if_exist(nullptr), 1);
    for (const auto& [state, exists] :
         {std::pair{"up\n", 1}, {"dormant\n", 1}, {"", 1}, {"dow", 1}, {"down", 0}, {"down\n", 0}}) {
        write("/sys/class/net/wlan0/operstate", state);
        EXPECT_EQ(does_if_exist("wlan0"), exists) << state;
    }
    EXPECT_EQ(does_ifup("ra0"), 0);
    EXPECT_EQ(does_ifup("wlan0"), 1);
    for (const std::string name : {"nowhere", "wlan0_and_much_more"})
        EXPECT_EQ(watch([&] { return does_ifup(name.c_str()); }),
                  (outcome{-1, "does_ifup[1483] " + name + " get SIOCGIFFLAGS fails:No such device\n", ""}));
    plug_in(no_sockets);
    EXPECT_EQ(watch([] { return does_ifup("wlan0"); }),
              (outcome{-1, "does_ifup[1476] Create socket fails:Invalid argument\n", ""}));
}

TEST_F(link_status, wired_link_is_read_from_the_switch) {
    const std::string question = "mii_mgr -g -p 0 -r 01";
    const std::pair<const char*, int> cases[] = {
        {R"("wired": true)", 1},
        {R"("wired": false)", 0},
        {R"("wired": true, "missing_programs": ["mii_mgr"])", 0},
        {R"("wired": true, "faults": [{"call": "popen", "errno": "ENOMEM"}])", 0},
    };
    for (const auto& [scene, up] : cases) {
        plug_in(R"({"adapter": "none", )" + std::string(scene) + "}");
        EXPECT_EQ(watch([] { return probe_link(); }).result, up) << scene;
        EXPECT_EQ(said().at(0).rfind("system " + question, 0), 0U);
        EXPECT_EQ(said().at(1).rfind("popen " + question, 0), 0U);
    }
}

TEST_F(link_status, radio_figures_and_what_stands_for_refused_ones) {
    WIFI_INFO info{};
    const auto ask = [&] { return get_wifi_info(info); };
    join(sound);
    EXPECT_EQ(watch(ask), (outcome{0, "", ""}));
    EXPECT_EQ(said(6), (lines{"wlan0 query 0x0678", "wlan0 query 0x0679", "wlan0 query 0x0108", "wlan0 query 0x0109",
                              "wlan0 query 0x0630", "ra0 SIOCGIWSTATS"}));
    EXPECT_EQ(info.level, -40);
    EXPECT_EQ(info.noise, -95);
    EXPECT_EQ(info.oid_0108, -40);

    plug_in(failing(R"("ioctl", "match": "query")"));
    EXPECT_EQ(watch(ask).result, 0);
    const std::vector figures = {info.oid_0108, info.oid_0109, info.oid_0678, info.oid_0679, info.oid_0630};
    EXPECT_EQ(figures, (std::vector{-99, -99, 0, 0, -99}));

    plug_in(failing(R"("ioctl", "match": "SIOCGIWSTATS")"));
    EXPECT_EQ(watch(ask), (outcome{-22, "", "ioctl failed: get_wifi_info\n", 1}));
    plug_in(no_sockets);
    EXPECT_EQ(watch(ask), (outcome{-1, "", "[get_wifi_info]open socket failed.\n"}));
}

} // namespace
