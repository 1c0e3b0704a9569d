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

int ap() {
    return run_ap_mode(text("Camera"), AUTH_WPA2PSK, ENC_AES, text("correct horse"));
}
int join() {
    return run_infra_mode(text("Net"), text("02:00:00:00:00:01"), AUTH_WPAPSK, ENC_TKIP, text("passphrase"), 36, 3);
}
int repeat() {
    return run_repeater_mode(text("Camera"), AUTH_WPA2PSK, ENC_AES, text("correct horse"), text("Net"),
                             text("02:00:00:00:00:01"), AUTH_WPAPSK, ENC_TKIP, text("passphrase"), 36);
}

class dispatch : public camera_test {
protected:
    /// What a request says on a fresh camera, and the configuration files that it leaves.
    lines said_by(const std::function<int()>& request, const std::string& adapter) {
        plug_in(R"({"adapter": ")" + adapter + R"(", )" + store + "}");
        EXPECT_EQ(watch(request).result, 0);
        return said() + lines{read("/tmp/hostapd.conf"), read("/tmp/wpa_supplicant.conf")};
    }
};

TEST_F(dispatch, family_is_found_in_the_usb_list) {
    const struct {
        std::string scene;
        int mtk;
        std::string devices = {}; // in place of the scene's own, unless empty
    } cases[] = {
        {R"("mediatek", "usb": "proc"})", 1},
        {R"("realtek", "usb": "proc"})", 0},
        {R"("mediatek", "usb": "lsusb"})", 1},
        {R"("mediatek", "usb": "absent"})", 0},
        {R"("mediatek", "usb": "lsusb", "missing_programs": ["lsusb"]})", 0},
        {R"("mediatek", "usb": "lsusb", "faults": [{"call": "popen", "errno": "ENOMEM"}]})", 0},
        {R"("mediatek", "faults": [{"call": "open", "match": "usb", "errno": "EACCES"}]})", 0},
        {R"("mediatek"})", 0, "P:  Vendor=148F ProdID=5370\n"},
        {R"("mediatek"})", 0, std::string(122, ' ') + "Vendor=148f\n"}, // across the 127-character buffer
        {R"("realtek"})", 1, "P:  Vendor=0bda\nP:  Vendor=148f ProdID=7601\n"},
    };
    for (const auto& plugged : cases) {
        SCOPED_TRACE(plugged.scene);
        plug_in(R"({"adapter": )" + plugged.scene);
        if (!plugged.devices.empty())
            write("/proc/bus/usb/devices", plugged.devices);
        const outcome found = watch(isMtkWifi);
        EXPECT_EQ(found.result, plugged.mtk);
        EXPECT_EQ(found.opened, 0);
    }
}

TEST_F(dispatch, stored_settings_say_what_explicit_ones_do) {
    for (const char* family : {"mediatek", "realtek"}) {
        EXPECT_EQ(said_by(run_infra_mode_base_db, family), said_by(join, family));
        EXPECT_EQ(said_by(run_repeater_mode_base_db, family), said_by(repeat, family));
    }
    EXPECT_EQ(said_by(do_ap_mode_base_db_realtek, "realtek"), said_by(ap, "realtek"));

    lines with_automatic_channel = said_by(ap, "mediatek");
    with_automatic_channel.insert(with_automatic_channel.end() - 2, "ra0 set AutoChannelSel=2");
    EXPECT_EQ(said_by(do_ap_mode_base_db_mtk, "mediatek"), with_automatic_channel);
}

TEST_F(dispatch, stored_wep_key_number_reaches_the_driver) {
    plug_in(R"({"adapter": "mediatek", "files": {"/etc/camera.conf": ["[client]", "ssid = Net", "auth = shared",
        "enc = wep", "key = abcde", "join = ssid", "channel = 1", "key_index = 3"]}})");
    watch(run_infra_mode_base_db);
    EXPECT_EQ(said().at(4), "wlan0 set ApCliDefaultKeyID=3");
    EXPECT_EQ(said().at(5), "wlan0 set ApCliKey3=abcde");
    EXPECT_EQ(said().at(7), "wlan0 set ApCliBssid=00:00:00:00:00:00");
}

TEST_F(dispatch, unreadable_store_touches_no_radio) {
    const std::function<int()> requests[] = {run_ap_mode_base_db, run_infra_mode_base_db, run_repeater_mode_base_db};
    for (const char* adapter : {"mediatek", "realtek"})
        for (const auto& request : requests) {
            plug_in(std::string(R"({"adapter": ")") + adapter + "\"}");
            EXPECT_EQ(watch(request),
                      (outcome{-1, "", folder + "/etc/camera.conf: cannot open: No such file or directory\n"}));
            EXPECT_EQ(said(), lines{});
        }
}

} // namespace
