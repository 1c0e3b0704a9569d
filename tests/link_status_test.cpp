#include "tests/camera_test.h"

#include "libwlan/libwlan.h"

namespace {

const std::string air = R"("air": [{"ssid": "Net", "bssid": "02:00:00:00:00:01", "channel": 6,
    "security": "open", "level": -40}])";

/// A station that has joined "Net".
const std::string joined = R"({"adapter": "mediatek", "clock_ms": 5, )" + air + "}";

class link_status : public camera_test {
protected:
    void join(const std::string& scene) {
        plug_in(scene);
        std::string name = "Net";
        std::string bssid = "02:00:00:00:00:01";
        ASSERT_EQ(do_infra_mode_mtk(name.data(), bssid.data(), AUTH_OPEN, ENC_NONE, nullptr, 6, 1), 0);
    }
};

std::string failing(const std::string& call, const std::string& match, const std::string& error) {
    return joined.substr(0, joined.size() - 1) + R"(, "faults": [{"call": ")" + call + R"(", "match": ")" + match +
           R"(", "times": 0, "errno": ")" + error + R"("}]})";
}

TEST_F(link_status, association_is_what_the_access_point_address_says) {
    const struct {
        unsigned char byte;
        int usable;
    } addresses[] = {{0x00, 0}, {0xFF, 0}, {0x44, 0}, {0x45, 1}};
    for (const auto& address : addresses) {
        sockaddr addr{};
        std::fill_n(addr.sa_data, 6, static_cast<char>(address.byte));
        EXPECT_EQ(does_have_vaild_mac(&addr), address.usable) << address.byte;
        addr.sa_data[5] = 1;
        EXPECT_EQ(does_have_vaild_mac(&addr), 1);
    }
    join(joined);
    EXPECT_EQ(does_wifi_associated("wlan0"), 1);
    EXPECT_EQ(does_wifi_associated("ra0"), 0);
}

TEST_F(link_status, channel_of_a_station) {
    const struct {
        std::string scene;
        const char* name;
        int result;
        const char* err;
        int left_open;
    } cases[] = {
        {joined, "wlan0", 6, "get_wifi_channel[1329] associ = true\nget_wifi_channel[1341] wrq.u.freq.m=6\n", 0},
        {joined, "apclii0", -1, "get_wifi_channel[1345] return -1\n", 0},
        {joined, nullptr, -1, "[get_wifi_channel]interface should not be null\n", 0},
        {failing("socket", "", "EMFILE"), "wlan0", -1, "[get_wifi_channel]open socket failed.\n", 0},
        {failing("ioctl", "SIOCGIWAP", "EIO"), "wlan0", -1,
         "[get_wifi_channel]SIOCGIWAP failed.\nget_wifi_channel[1345] return -1\n", 0},
        {failing("ioctl", "SIOCGIWFREQ", "EIO"), "wlan0", -1,
         "get_wifi_channel[1329] associ = true\nSIOCGIWFREQ:: Input/output error\n", 1},
    };
    for (const auto& question : cases) {
        SCOPED_TRACE(question.err);
        plug_in(question.scene);
        wlan radio; // joins on a socket of its own, which a scene without sockets lacks
        std::string ssid = "Net";
        if (radio.init() == 0)
            radio.do_infra_mode(ssid.data(), ssid.data(), AUTH_OPEN, ENC_NONE, nullptr, 6, APCLI_BY_SSID, 1);
        const int before = open_descriptors();
        const outcome run = watch([&] { return get_wifi_channel(question.name); });
        EXPECT_EQ(run.result, question.result);
        EXPECT_EQ(run.err, question.err);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(open_descriptors(), before + question.left_open);
    }
    plug_in(failing("socket", "", "EMFILE"));
    const outcome unasked = watch([] { return does_wifi_associated(nullptr) + does_wifi_associated("wlan0"); });
    EXPECT_EQ(unasked.result, 0);
    EXPECT_EQ(unasked.err, "[does_wifi_associated]interface should not be null\n"
                           "[does_wifi_associated]open socket failed.\n");
}

TEST_F(link_status, current_channel_asks_without_an_association) {
    const std::string blue = "\033[1;34m5 [get_current_wifi_channel] ";
    const struct {
        std::string scene;
        const char* name;
        int result;
        std::string out;
        std::string err;
        std::string console;
    } cases[] = {
        {joined, "wlan0", 6, "get_current_wifi_channel[1387] wrq.u.freq.m=6\n", "", "wrq.u.freq.m=6"},
        {joined, nullptr, -1, "", "", "interface should not be null"},
        {failing("socket", "", "EMFILE"), "wlan0", -1, "", "", "open socket failed"},
        {failing("ioctl", "SIOCGIWFREQ", "EIO"), "wlan0", -1, "", "SIOCGIWFREQ:: Input/output error\n",
         "ioctl SIOCGIWFREQ fail: Input/output error"},
    };
    for (const auto& question : cases)
        for (const bool traced : {false, true}) {
            SCOPED_TRACE(question.console);
            join(joined);
            plug_in(question.scene);
            write("/tmp/debug_level", traced ? "4" : "0");
            wlan radio;
            std::string ssid = "Net";
            write("/tmp/debug_level", "0");
            if (radio.init() == 0)
                radio.do_infra_mode(ssid.data(), ssid.data(), AUTH_OPEN, ENC_NONE, nullptr, 6, APCLI_BY_SSID, 1);
            write("/tmp/debug_level", traced ? "4" : "0");
            const outcome run = watch([&] { return get_current_wifi_channel(question.name); });
            EXPECT_EQ(run.result, question.result);
            EXPECT_EQ(run.out, question.out);
            EXPECT_EQ(run.err, question.err);
            EXPECT_EQ(read("/dev/console"), traced ? blue + question.console + "\033[0m\n" : "");
        }
}

TEST_F(link_status, interface_flags_and_operational_state) {
    plug_in(R"({"adapter": "mediatek", "interfaces": {"ra0": {"state": "down"}, "wlan0": {"state": "up"}}})");
    EXPECT_EQ(does_if_exist("ra0"), 0);
    EXPECT_EQ(does_if_exist("wlan0"), 1);
    EXPECT_EQ(does_if_exist("nowhere"), 1); // what is not there counts as there
    EXPECT_EQ(does_if_exist(nullptr), 1);
    for (const auto& [state, exists] :
         {std::pair{"unknown\n", 1}, {"dormant\n", 1}, {"", 1}, {"dow", 1}, {"down", 0}}) {
        write("/sys/class/net/wlan0/operstate", state);
        EXPECT_EQ(does_if_exist("wlan0"), exists) << state;
    }
    EXPECT_EQ(does_ifup("ra0"), 0);
    EXPECT_EQ(does_ifup("wlan0"), 1);
    const outcome unknown = watch([] { return does_ifup("nowhere"); });
    EXPECT_EQ(unknown.result, -1);
    EXPECT_EQ(unknown.out, "does_ifup[1483] nowhere get SIOCGIFFLAGS fails:No such device\n");
    const outcome too_long = watch([] { return does_ifup("wlan0_and_much_more"); });
    EXPECT_EQ(too_long.out, "does_ifup[1483] wlan0_and_much_more get SIOCGIFFLAGS fails:No such device\n");
    plug_in(failing("socket", "", "EMFILE"));
    const outcome no_socket = watch([] { return does_ifup("wlan0"); });
    EXPECT_EQ(no_socket.result, -1);
    EXPECT_EQ(no_socket.out, "does_ifup[1476] Create socket fails:Too many open files\n");
}

TEST_F(link_status, wired_link_is_read_from_the_switch) {
    const std::string question = "mii_mgr -g -p 0 -r 01";
    for (const bool wired : {true, false}) {
        plug_in(std::string(R"({"adapter": "none", "wired": )") + (wired ? "true}" : "false}"));
        EXPECT_EQ(watch([] { return probe_link(); }).result, wired ? 1 : 0);
        EXPECT_EQ(said(), (lines{"system " + question, "popen " + question}));
    }
    plug_in(R"({"adapter": "none", "wired": true, "missing_programs": ["mii_mgr"]})");
    EXPECT_EQ(watch([] { return probe_link(); }).result, 0);
    plug_in(R"({"adapter": "none", "wired": true, "faults": [{"call": "popen", "errno": "ENOMEM"}]})");
    EXPECT_EQ(watch([] { return probe_link(); }).result, 0);
}

TEST_F(link_status, radio_figures_and_what_stands_for_refused_ones) {
    const lines asked = {"wlan0 query 0x0678", "wlan0 query 0x0679", "wlan0 query 0x0108",
                         "wlan0 query 0x0109", "wlan0 query 0x0630", "ra0 SIOCGIWSTATS"};
    WIFI_INFO info{};
    join(joined);
    EXPECT_EQ(get_wifi_info(info), 0);
    const lines all = said();
    EXPECT_EQ(lines(all.end() - 6, all.end()), asked);
    EXPECT_EQ(info.level, -40);
    EXPECT_LT(info.noise, -40);
    EXPECT_EQ(info.oid_0108, -40);

    plug_in(failing("ioctl", "query", "EIO"));
    EXPECT_EQ(get_wifi_info(info), 0);
    EXPECT_EQ(info.oid_0108, -99);
    EXPECT_EQ(info.oid_0109, -99);
    EXPECT_EQ(info.oid_0678, 0);
    EXPECT_EQ(info.oid_0679, 0);
    EXPECT_EQ(info.oid_0630, -99);

    plug_in(failing("ioctl", "SIOCGIWSTATS", "EIO"));
    const int before = open_descriptors();
    const outcome no_statistics = watch([&] { return get_wifi_info(info); });
    EXPECT_EQ(no_statistics.result, -22);
    EXPECT_EQ(no_statistics.err, "ioctl failed: get_wifi_info\n");
    EXPECT_EQ(open_descriptors(), before + 1);

    plug_in(failing("socket", "", "EMFILE"));
    const outcome no_socket = watch([&] { return get_wifi_info(info); });
    EXPECT_EQ(no_socket.result, -1);
    EXPECT_EQ(no_socket.err, "[get_wifi_info]open socket failed.\n");
}

} // namespace
