// SPDX-License-Identifier: MIT
// Which adapter a request goes to, with which settings, and what it leaves open.

#include "tests/support/camera_test.h"

#include <functional>

#include "libwlan/libwlan.h"

namespace {

const stored_settings stored = stored_settings()
                                   .access_point("Camera", "wpa2psk", "aes", "correct horse")
                                   .client("Net", "wpapsk", "tkip", "passphrase")
                                   .value("client", "bssid", "02:00:00:00:00:01")
                                   .value("client", "join", "bssid")
                                   .value("client", "channel", "36")
                                   .value("client", "key_index", "3")
                                   .system("Eye 3", "ACME")
                                   .region(5, 7);

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

class mode_requests : public camera_test {
protected:
    /// What a request says on a fresh camera, and the configuration files that it leaves.
    lines said_by(const std::function<int()>& request, const char* adapter) {
        plug_in(scene(adapter).stored(stored));
        EXPECT_EQ(watch(request).result, 0);
        return said() + lines{read("/tmp/hostapd.conf"), read("/tmp/wpa_supplicant.conf")};
    }
};

TEST_F(mode_requests, family_is_found_in_the_usb_list) {
    const scene mtk = scene("mediatek");
    const scene lsusb = mtk.key("usb", "lsusb");
    const struct {
        const char* name;
        scene camera;
        int mtk;
        std::string devices = {}; // in place of the scene's own, unless empty
    } rows[] = {
        {"listed", mtk, 1},
        {"other family", scene("realtek"), 0},
        {"listed by lsusb", lsusb, 1},
        {"nothing listed", mtk.key("usb", "absent"), 0},
        {"no lsusb", lsusb.missing_program("lsusb"), 0},
        {"no pipe", lsusb.fault("popen", "ENOMEM"), 0},
        {"unreadable list", mtk.fault("open", "EACCES").match("usb"), 0},
        {"upper-case vendor", mtk, 0, "P:  Vendor=148F ProdID=5370\n"},
        {"to the end of the 127-character buffer", mtk, 1, std::string(116, ' ') + "Vendor=148f\n"},
        {"across the 127-character buffer", mtk, 0, std::string(117, ' ') + "Vendor=148f\n"},
        {"second of two", scene("realtek"), 1, "P:  Vendor=0bda\nP:  Vendor=148f ProdID=7601\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        if (!row.devices.empty())
            write("/proc/bus/usb/devices", row.devices);
        const outcome found = watch(isMtkWifi);
        EXPECT_EQ(found.result, row.mtk);
        EXPECT_EQ(found.opened, 0);
    }
}

TEST_F(mode_requests, stored_settings_say_what_given_ones_do) {
    for (const char* family : {"mediatek", "realtek"}) {
        SCOPED_TRACE(family);
        EXPECT_EQ(said_by(run_infra_mode_base_db, family), said_by(join, family));
        EXPECT_EQ(said_by(run_repeater_mode_base_db, family), said_by(repeat, family));
    }
    EXPECT_EQ(said_by(do_ap_mode_base_db_realtek, "realtek"), said_by(ap, "realtek"));
}

TEST_F(mode_requests, stored_ap_takes_the_driver_s_channel) {
    lines expected = said_by(ap, "mediatek");
    expected.insert(expected.end() - 2, "ra0 set AutoChannelSel=2"); // the files are the last two
    EXPECT_EQ(said_by(do_ap_mode_base_db_mtk, "mediatek"), expected);
}

TEST_F(mode_requests, stored_wep_key_number_reaches_the_driver) {
    plug_in(scene("mediatek")
                .stored(stored_settings()
                            .client("Net", "shared", "wep", "abcde")
                            .value("client", "channel", "1")
                            .value("client", "key_index", "3")));
    EXPECT_EQ(watch(run_infra_mode_base_db).result, 0);
    EXPECT_EQ(said().at(4), "wlan0 set ApCliDefaultKeyID=3");
    EXPECT_EQ(said().at(5), "wlan0 set ApCliKey3=abcde");
    EXPECT_EQ(said().at(7), "wlan0 set ApCliBssid=00:00:00:00:00:00");
}

const struct {
    const char* name;
    int (*explicit_settings)();
    int (*stored_settings)();
} requests[] = {
    {"access point", ap, run_ap_mode_base_db},
    {"station", join, run_infra_mode_base_db},
    {"repeater", repeat, run_repeater_mode_base_db},
};

TEST_F(mode_requests, unreadable_store_touches_no_radio) {
    for (const char* adapter : {"mediatek", "realtek"}) {
        for (const auto& request : requests) {
            SCOPED_TRACE(print("%s, %s", adapter, request.name));
            plug_in(scene(adapter)); // without its file
            EXPECT_EQ(watch(request.stored_settings),
                      (outcome{-1, "", folder + "/etc/camera.conf: cannot open: No such file or directory\n"}));
            EXPECT_EQ(said(), lines{});
        }
    }
}

TEST_F(mode_requests, failed_one_alone_keeps_its_socket) {
    const scene camera = scene("mediatek").stored(stored.dhcp_server("192.168.8.1"));
    for (const auto& request : requests) {
        for (const auto run : {request.explicit_settings, request.stored_settings}) {
            SCOPED_TRACE(print("%s, %s", request.name, run == request.stored_settings ? "stored" : "explicit"));
            plug_in(camera);
            write("/tmp/debug_level", "1"); // so that commands close their consoles
            const outcome good = watch(run);
            EXPECT_EQ(good.result, 0);
            EXPECT_EQ(good.opened, 0);

            plug_in(camera.fault("ioctl", "EIO").match("AuthMode"));
            write("/tmp/debug_level", "1");
            const outcome failed = watch(run);
            EXPECT_EQ(failed.result, -1);
            EXPECT_EQ(failed.opened, 1);
        }
    }
}

} // namespace
