#include "tests/camera_test.h"

#include <functional>

#include "libwlan/libwlan.h"

namespace {

const std::string store = R"("files": {"/etc/camera.conf": [
    "[access_point]", "ssid = Camera", "auth = wpa2psk", "enc = aes", "key = correct horse",
    "[client]", "ssid = Net", "bssid = 02:00:00:00:00:01", "auth = wpapsk", "enc = tkip", "key = passphrase",
    "join = bssid", "channel = 36", "key_index = 3",
    "[dhcp_server]", "address = 192.168.8.1", "pool_start = 192.168.8.100", "pool_end = 192.168.8.200",
    "netmask = 255.255.255.0",
    "[system]", "model = Eye 3", "manufacturer = ACME", "[region]", "band_2g = 5", "band_5g = 7"]})";

std::string scene(const std::string& adapter, const std::string& more = "") {
    return R"({"adapter": ")" + adapter + R"(", )" + more + store + "}";
}

std::string ap_ssid = "Camera", ap_key = "correct horse";
std::string ssid = "Net", bssid = "02:00:00:00:00:01", key = "passphrase";

int ap() {
    return run_ap_mode(ap_ssid.data(), AUTH_WPA2PSK, ENC_AES, ap_key.data());
}
int join() {
    return run_infra_mode(ssid.data(), bssid.data(), AUTH_WPAPSK, ENC_TKIP, key.data(), 36, 3);
}
int repeat() {
    return run_repeater_mode(ap_ssid.data(), AUTH_WPA2PSK, ENC_AES, ap_key.data(), ssid.data(), bssid.data(),
                             AUTH_WPAPSK, ENC_TKIP, key.data(), 36);
}

class dispatch : public camera_test {
protected:
    /// What a request says on a fresh camera, and the configuration files that it leaves.
    lines said_by(const std::function<int()>& request, const std::string& adapter) {
        plug_in(scene(adapter));
        EXPECT_EQ(watch(request).result, 0);
        lines all = said();
        all.push_back(read("/tmp/hostapd.conf"));
        all.push_back(read("/tmp/wpa_supplicant.conf"));
        return all;
    }
};

TEST_F(dispatch, family_is_found_in_the_usb_list) {
    const struct {
        const char* title;
        std::string scene;
        std::string devices; // in place of the scene's own, unless empty
        int mtk;
    } cases[] = {
        {"proc", R"({"adapter": "mediatek", "usb": "proc"})", "", 1},
        {"proc, realtek", R"({"adapter": "realtek", "usb": "proc"})", "", 0},
        {"lsusb", R"({"adapter": "mediatek", "usb": "lsusb"})", "", 1},
        {"lsusb, realtek", R"({"adapter": "realtek", "usb": "lsusb"})", "", 0},
        {"neither", R"({"adapter": "mediatek", "usb": "absent"})", "", 0},
        {"no lsusb", R"({"adapter": "mediatek", "usb": "lsusb", "missing_programs": ["lsusb"]})", "", 0},
        {"no pipe", R"({"adapter": "mediatek", "usb": "lsusb", "faults": [{"call": "popen", "errno": "ENOMEM"}]})", "",
         0},
        {"unreadable", R"({"adapter": "mediatek", "faults": [{"call": "open", "match": "usb", "errno": "EACCES"}]})",
         "", 0},
        {"capitals", R"({"adapter": "mediatek"})", "P:  Vendor=148F ProdID=5370\n", 0},
        {"across the 127-character buffer", R"({"adapter": "mediatek"})", std::string(122, ' ') + "Vendor=148f\n", 0},
        {"later line", R"({"adapter": "realtek"})", "P:  Vendor=0bda\nP:  Vendor=148f ProdID=7601\n", 1},
    };
    for (const auto& plugged : cases) {
        SCOPED_TRACE(plugged.title);
        plug_in(plugged.scene);
        if (!plugged.devices.empty())
            write("/proc/bus/usb/devices", plugged.devices);
        const int before = open_descriptors();
        EXPECT_EQ(watch([] { return isMtkWifi(); }).result, plugged.mtk);
        EXPECT_EQ(open_descriptors(), before);
    }
}

TEST_F(dispatch, stored_settings_say_what_explicit_ones_do) {
    EXPECT_EQ(said_by(run_infra_mode_base_db, "mediatek"), said_by(join, "mediatek"));
    EXPECT_EQ(said_by(run_infra_mode_base_db, "realtek"), said_by(join, "realtek"));
    EXPECT_EQ(said_by(run_repeater_mode_base_db, "mediatek"), said_by(repeat, "mediatek"));
    EXPECT_EQ(said_by(run_repeater_mode_base_db, "realtek"), said_by(repeat, "realtek"));
    EXPECT_EQ(said_by(do_ap_mode_base_db_realtek, "realtek"), said_by(ap, "realtek"));

    lines with_automatic_channel = said_by(ap, "mediatek");
    with_automatic_channel.insert(with_automatic_channel.end() - 2, "ra0 set AutoChannelSel=2");
    EXPECT_EQ(said_by(do_ap_mode_base_db_mtk, "mediatek"), with_automatic_channel);
}

TEST_F(dispatch, stored_wep_key_number_reaches_the_driver) {
    plug_in(
        R"({"adapter": "mediatek", "files": {"/etc/camera.conf": ["[client]", "ssid = Net", "auth = shared",
        "enc = wep", "key = abcde", "join = ssid", "channel = 1", "key_index = 3"]}})");
    watch([] { return run_infra_mode_base_db(); });
    EXPECT_EQ(said().at(4), "wlan0 set ApCliDefaultKeyID=3");
    EXPECT_EQ(said().at(5), "wlan0 set ApCliKey3=abcde");
    EXPECT_EQ(said().at(7), "wlan0 set ApCliBssid=00:00:00:00:00:00");
}

TEST_F(dispatch, unreadable_store_touches_no_radio) {
    const std::function<int()> requests[] = {run_ap_mode_base_db, run_infra_mode_base_db, run_repeater_mode_base_db};
    for (const char* adapter : {"mediatek", "realtek"})
        for (const auto& request : requests) {
            plug_in(std::string(R"({"adapter": ")") + adapter + "\"}");
            const int before = open_descriptors();
            EXPECT_EQ(watch(request).result, -1);
            EXPECT_EQ(said(), lines{});
            EXPECT_EQ(open_descriptors(), before);
        }
}

TEST_F(dispatch, only_a_failed_request_leaves_its_socket_open) {
    const std::function<int()> requests[] = {ap, join, repeat, do_ap_mode_base_db_mtk, run_infra_mode_base_db};
    for (const auto& request : requests) {
        plug_in(scene("mediatek", R"("faults": [{"call": "ioctl", "match": "AuthMode", "nth": 1, "errno": "EIO"}], )"));
        write("/tmp/debug_level", "1"); // traced commands hold no console stream
        const int before = open_descriptors();
        EXPECT_EQ(watch(request).result, -1);
        EXPECT_EQ(open_descriptors(), before + 1);
        EXPECT_EQ(watch(request).result, 0);
        EXPECT_EQ(open_descriptors(), before + 1);
    }
}

} // namespace
