#include "tests/camera_test.h"

#include <cstdarg>
#include <cstring>
#include <optional>
#include <tuple>

#include <dlfcn.h>

#include "libwlan/libwlan.h"

static std::optional<int> other_status; // than the camera's driver gives

extern "C" __attribute__((visibility("default"))) int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    auto* data = va_arg(arguments, iwreq*);
    va_end(arguments);
    static const auto camera = reinterpret_cast<decltype(&ioctl)>(dlsym(RTLD_NEXT, "ioctl"));
    const int result = camera(fd, request, data);
    if (other_status && result == 0)
        std::memcpy(data->u.data.pointer, &*other_status, sizeof *other_status);
    return result;
}

namespace {

class wps : public camera_test {
protected:
    void on_camera(const std::string& more = "") {
        plug_in(R"({"adapter": "mediatek", )" + more + R"("files": {"/etc/camera.conf": ["[client]", "ssid = Old",
            "key = old-key-1", "auth = open", "enc = none", "[region]", "band_2g = 5"]}})");
        ASSERT_EQ(radio.init(), 0);
    }
    outcome commit(const std::string& profile) {
        write("/answers/profile", profile);
        return watch([&] { return radio.update_wsc_to_db_and_action(text("wlan0")); });
    }
    wlan radio;
};

const lines session = {"system ifconfig wlan0 down", "system ifconfig wlan0 up", "wlan0 set CountryRegion=5",
                       "wlan0 set ApCliEnable=0",    "wlan0 set WscConfMode=1",  "wlan0 set WscMode=2",
                       "wlan0 set ApCliEnable=1",    "wlan0 set WscGetConf=1"};

TEST_F(wps, cycles_the_client_and_starts_the_session_last) {
    on_camera();
    for (const int index : {-1, 1}) // there is one AP-client only
        EXPECT_EQ(radio.do_wps(index) + radio.stop_wps(index) + radio.does_it_finish(index), -2);
    EXPECT_EQ(radio.init_wps() | radio.do_wps(0) | radio.stop_wps(0), 0);
    EXPECT_EQ(radio.stop_wps(0), 0); // with nothing to stop
    const lines stop = {"wlan0 set WscStop=1"};
    EXPECT_EQ(said(), lines{"system ifconfig wlan0 down"} + session + stop + stop);
    EXPECT_EQ(radio.release_wps(), 0);
    EXPECT_EQ(radio.sock, -1);
}

TEST_F(wps, refused_key_keeps_back_none_of_the_session_and_a_refused_region_all_of_it) {
    constexpr const char* rows[][3] = {
        // refused, message, last request
        {"CountryRegion", "set region failed\n", "wlan0 set CountryRegion=5 = EIO"},
        {"WscMode", "set wsc failed\n", "wlan0 set WscGetConf=1 = EINVAL"}, // the driver misses its mode
    };
    for (const auto& [refused, message, last] : rows) {
        on_camera(R"("faults": [{"call": "ioctl", "match": ")" + std::string(refused) + R"(", "errno": "EIO"}], )");
        const outcome failed = watch([&] { return radio.do_wps(0); });
        EXPECT_EQ(failed.result, -1);
        EXPECT_EQ(failed.err, message);
        EXPECT_EQ(said().back(), last);
    }
    EXPECT_EQ(said().size(), session.size());
}

TEST_F(wps, names_the_status_or_gives_its_number) {
    // clang-format off
    const std::pair<int, std::string> rows[] = {
        {0, "STATUS_WSC_NOTUSED"}, {2, "STATUS_WSC_FAIL"}, {34, "STATUS_WSC_CONFIGURED"},
        {42, "STATUS_WSC_IBSS_FIXED_PIN"}, {43, "43"}, {255, "255"}, {256, "256"}, {-1, "-1"},
        {257, "STATUS_WSC_PBC_TOO_MANY_AP"}, {265, "STATUS_WSC_PBC_SESSION_OVERLAP"},
        {269, "STATUS_WSC_PIN_NO_AP"}, {270, "270"}};
    // clang-format on
    on_camera(R"("faults": [{"call": "ioctl", "nth": 13, "errno": "EIO"}], )");
    const auto look = [&] { return radio.does_it_finish(0); };
    for (const auto& [code, name] : rows) {
        other_status = code;
        EXPECT_EQ(watch(look), (outcome{code == 34 ? 1 : 0, "wlan0: WSC status:[" + name + "]\n", ""}));
    }
    other_status.reset();
    EXPECT_EQ(watch(look), (outcome{0, "", "wlan0: Input/output error\n"}));
    EXPECT_EQ(said().back(), "wlan0 query 0x0751 = EIO");
}

TEST_F(wps, stores_what_the_profile_says_and_keeps_the_key_for_a_network_without_one) {
    const std::tuple<const char*, int, int, const char*> rows[] = {
        {"SSID = home\nAuthMode = OPEN\nEncrypType = NONE\nKeyIndex = 1\n", 0, 0, "old-key-1"},
        {"SSID = home\nAuthMode = SHARED\nEncrypType = WEP\nKeyIndex = 1\nKey = abcde\n", 1, 1, "abcde"},
        {"SSID = home\nAuthMode = WPAPSK\nEncrypType = TKIP\nKeyIndex = 1\nKey = a = b\n", 2, 2, "a = b"},
        {"SSID = home\n\nAuthMode = WPA\nEncrypType = AES\nKeyIndex = 1\n\nKey = new-key", 2, 3, "new-key"},
        {"SSID = home\nAuthMode = WPA2\nEncrypType = AES\nKeyIndex = 1\nKey = new-key\nMore", 3, 3, "new-key"},
        {"SSID = home\nAuthMode = WPA2PSK\nEncrypType = AES\nKeyIndex = 1\nKey = new-key", 5, 3, "new-key"},
    };
    for (const auto& [profile, auth, enc, key] : rows) {
        const std::string room(4096 - std::strlen(profile), ' ');
        for (const std::string& before : {std::string("WSC profile\n"), room}) {
            on_camera();
            EXPECT_EQ(commit(before + profile).result, 0) << profile;
            _wireless_setting stored{};
            ASSERT_EQ(cam_get_client(&stored), 0);
            EXPECT_EQ(stored.client_ssid + std::string(" ") + stored.client_key, std::string("home ") + key);
            EXPECT_TRUE(stored.client_enabled == 1 && stored.client_auth == auth && stored.client_enc == enc);
        }
    }
}

TEST_F(wps, stores_nothing_of_a_profile_that_makes_no_sense_or_cannot_be_had) {
    const std::string open = "SSID = a\nAuthMode = OPEN\n";
    const struct {
        std::string profile;
        std::string err;
        std::string scene;
        int result = -22;
    } rows[] = {
        {"", "", ""},
        {open + "EncrypType = NONE\n", "", ""},
        {open + "EncrypType NONE\nKeyIndex = 1\n", "", ""},
        {open + "EncrypType = NONE\nKeyIndex = 1\nKey", "", ""},
        {open + "EncrypType = TKIPAES\nKeyIndex = 1\n", "parse enc fail TKIPAES\n", ""},
        {"SSID = a\nAuthMode = WPA3\nEncrypType = AES\nKeyIndex = 3\n", "parse auth fail 3 WPA3\n", ""},
        {open + "EncrypType = NONE\nKeyIndex = 1\n", "ioctl failed: update_wsc_to_db_and_action\n",
         R"("faults": [{"call": "ioctl", "match": "profile", "errno": "EIO"}], )"},
        {"SSID = " + std::string(40, 's') + "\nA = OPEN\nE = NONE\nK = 1\n",
         folder + "/etc/camera.conf (not written):2: client.ssid: is longer than 32 bytes\nset client failed\n", "",
         -13},
    };
    for (const auto& row : rows) {
        on_camera(row.scene);
        const std::string before = read("/etc/camera.conf");
        EXPECT_EQ(commit(row.profile), (outcome{row.result, "", row.err})) << row.profile;
        EXPECT_EQ(read("/etc/camera.conf"), before);
    }
    write("/etc/camera.conf", "");
    const std::string missing = folder + "/etc/camera.conf: client.ssid: is missing\nget client set failed\n";
    EXPECT_EQ(commit(open), (outcome{-13, "", missing}));
}

TEST_F(wps, asks_iwgetid_for_the_channel_and_the_cable_for_what_to_do) {
    on_camera(R"("wired": true, "faults": [{"call": "popen", "match": "iwgetid", "errno": "EMFILE"}], )");
    EXPECT_EQ(radio.get_client_channel(nullptr), -122);
    EXPECT_EQ(radio.get_client_channel(text("wlan0")), 0); // not associated: the tool prints nothing
    EXPECT_EQ(said()[0], "popen iwgetid --raw --channel ra0 = EMFILE");
    EXPECT_EQ(watch([&] { return radio.does_network_need_to_act(); }).result, 0);
    EXPECT_EQ(said().back(), "system ifconfig wlan0 down");
    on_camera();
    EXPECT_EQ(watch([&] { return radio.does_network_need_to_act(); }).result, 0);
    EXPECT_EQ(said().back(), "system /etc/rc.d/init.d/network.sh reload &");
}

} // namespace
