// SPDX-License-Identifier: MIT
// Which of the store's records the stored MediaTek modes read: here the store gives others for the access point than
// for the client.

#include "tests/support/camera_test.h"

#include <cstring>

#include "libwlan/libwlan.h"

namespace {

using stored_records = camera_test;

/// @param source the names begin with it.
int fill(_wireless_setting* setting, const std::string& source) {
    *setting = {};
    std::strcpy(setting->ap_ssid, (source + "'s AP").c_str());
    setting->ap_auth = AUTH_OPEN;
    setting->ap_enc = ENC_NONE;
    std::strcpy(setting->client_ssid, (source + "'s client").c_str());
    std::strcpy(setting->client_bssid, "02:00:00:00:00:01");
    std::strcpy(setting->client_key, "abcde");
    setting->client_auth = AUTH_SHARED;
    setting->client_enc = ENC_WEP;
    setting->client_channel = 6;
    setting->client_apcli_mode = static_cast<set_apcli_from_cam>(2);
    setting->client_key_index = source == "AP" ? 3 : 4;
    return 0;
}

const lines serving = {"ra0 set CountryRegion=0", "ra0 set RadioOn=1", "ra0 set AuthMode=OPEN",
                       "ra0 set EncrypType=NONE", "ra0 set SSID=AP's AP"};

lines station(const std::string& name, const std::string& key_index) {
    lines commands = {"ApCliEnable=0",
                      "CountryRegion=0",
                      "ApCliAuthMode=WEPAUTO",
                      "ApCliEncrypType=WEP",
                      "ApCliDefaultKeyID=" + key_index,
                      "ApCliKey" + key_index + "=abcde",
                      "ApCliSsid=" + name,
                      "ApCliBssid=00:00:00:00:00:00",
                      "ApCliEnable=1",
                      "ApCliAutoConnect=1"};
    for (std::string& command : commands)
        command.insert(0, "wlan0 set ");
    return commands;
}

TEST_F(stored_records, each_mode_reads_its_own) {
    const struct {
        const char* name;
        int (*request)();
        lines said;
    } rows[] = {
        {"access point", do_ap_mode_base_db_mtk, serving + lines{"ra0 set AutoChannelSel=2"}},
        {"station", do_infra_mode_base_db_mtk, station("client's client", "4")},
        {"repeater, both from one", do_repeater_mode_base_db_mtk,
         serving + lines{"ra0 set AutoChannelSel=2"} + station("AP's client", "3")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(scene("mediatek"));
        EXPECT_EQ(watch(row.request).result, 0);
        EXPECT_EQ(said(), row.said);
    }
}

TEST_F(stored_records, refused_automatic_channel_is_passed_over) {
    const struct {
        int (*request)();
        lines after;
    } rows[] = {
        {do_ap_mode_base_db_mtk, {}},
        {do_repeater_mode_base_db_mtk, station("AP's client", "3")},
    };
    for (const auto& row : rows) {
        plug_in(scene("mediatek").fault("ioctl", "EIO").match("AutoChannelSel"));
        EXPECT_EQ(watch(row.request).result, 0);
        EXPECT_EQ(said(), serving + lines{"ra0 set AutoChannelSel=2 = EIO"} + row.after);
    }
}

} // namespace

// In front of the store's own.

int cam_get_ap(_wireless_setting* setting) {
    return fill(setting, "AP");
}

int cam_get_client(_wireless_setting* setting) {
    return fill(setting, "client");
}
