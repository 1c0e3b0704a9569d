// SPDX-License-Identifier: MIT
// How much of a name, a key or an address reaches the driver or the daemon: the lengths that
// libwlan/libwlan.h states.

#include "tests/support/camera_test.h"

#include <functional>

#include "libwlan/libwlan.h"

namespace {

const std::string mediatek = R"({"adapter": "mediatek"})";
const std::string realtek = R"({"adapter": "realtek",
    "files": {"/etc/camera.conf": ["[system]", "model = Eye 3", "manufacturer = ACME"]}})";

char net[] = "Net";
char address[] = "02:00:00:00:00:01";
char passphrase[] = "passphrase";

int join(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    return run_infra_mode(ssid, bssid, auth, enc, key, 6, 1);
}

struct row {
    const char* name;
    const std::string& scene;
    std::size_t fits; // bytes
    std::function<int(char*)> request;
    std::string before; // what stands before and behind the text on its way
    std::string behind = {};
};

const row rows[] = {
    {"MediaTek station: SSID", mediatek, 245,
     [](char* text) { return join(text, address, AUTH_OPEN, ENC_NONE, nullptr); }, "wlan0 set ApCliSsid="},
    {"MediaTek station: passphrase", mediatek, 243,
     [](char* text) { return join(net, address, AUTH_WPA2PSK, ENC_AES, text); }, "wlan0 set ApCliWPAPSK="},
    {"MediaTek station: WEP key", mediatek, 245,
     [](char* text) { return join(net, address, AUTH_SHARED, ENC_WEP, text); }, "wlan0 set ApCliKey1="},
    {"MediaTek station: BSSID", mediatek, 30, [](char* text) { return join(net, text, AUTH_OPEN, ENC_NONE, nullptr); },
     "wlan0 set ApCliBssid="},
    {"MediaTek access point: SSID", mediatek, 250,
     [](char* text) { return run_ap_mode(text, AUTH_OPEN, ENC_NONE, nullptr); }, "ra0 set SSID="},
    {"MediaTek access point: passphrase", mediatek, 248,
     [](char* text) { return run_ap_mode(net, AUTH_WPA2PSK, ENC_AES, text); }, "ra0 set WPAPSK="},
    {"MediaTek access point: WEP key", mediatek, 250,
     [](char* text) { return run_ap_mode(net, AUTH_SHARED, ENC_WEP, text); }, "ra0 set Key1="},
    {"Realtek station: SSID", realtek, 120,
     [](char* text) { return join(text, nullptr, AUTH_OPEN, ENC_NONE, nullptr); }, "\tssid=\"", "\"\n"},
    {"Realtek station: passphrase", realtek, 120,
     [](char* text) { return join(net, nullptr, AUTH_WPA2PSK, ENC_AES, text); }, "\tpsk=\"", "\"\n"},
    {"Realtek access point: SSID", realtek, 121,
     [](char* text) { return run_ap_mode(text, AUTH_WPA2PSK, ENC_AES, passphrase); }, "\nssid=", "\n"},
    {"Realtek access point: passphrase", realtek, 112,
     [](char* text) { return run_ap_mode(net, AUTH_WPA2PSK, ENC_AES, text); }, "\nwpa_passphrase=", "\n"},
};

class text_lengths : public camera_test {
protected:
    /// Whether all of a text of `length` bytes reaches the driver, or a daemon's file.
    bool arrives_whole(const row& row, std::size_t length) const {
        plug_in(row.scene);
        const std::string sent = std::string(length - 1, 'x') + 'Y';
        watch([&] { return row.request(text(sent)); });
        std::string all = read("/tmp/wpa_supplicant.conf") + read("/tmp/hostapd.conf");
        for (const std::string& line : said())
            all += line + "\n";
        return all.find(row.before + sent + row.behind) != std::string::npos;
    }
};

TEST_F(text_lengths, longer_texts_are_cut) {
    for (const row& row : rows) {
        EXPECT_TRUE(arrives_whole(row, row.fits)) << row.name;
        EXPECT_FALSE(arrives_whole(row, row.fits + 1)) << row.name;
    }
}

} // namespace
