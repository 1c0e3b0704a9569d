// SPDX-License-Identifier: MIT
// Radio modes: which adapter is plugged in, and one request on a fresh object of its family.

#include "libwlan/modes.h"

#include <cstdio>
#include <cstring>

#include <unistd.h>

#include "base/paths.h"
#include "base/program.h"
#include "driver_request.h"
#include "libwlan/store.h"
#include "libwlan/wext.h"
#include "libwlan/wlan.h"
#include "mtk/interfaces.h"

using namespace libwlan;

namespace {

/// Whether one of the lines of `list` contains `text`.
bool lists(FILE* list, const char* text) {
    char line[128];
    while (std::fgets(line, sizeof line, list) != nullptr) {
        if (std::strstr(line, text) != nullptr)
            return true;
    }
    return false;
}

template <std::size_t size>
void end_text(char (&text)[size]) {
    text[size - 1] = '\0';
}

/// Runs `request` with one record of the store. A text that the store left without an end is cut at
/// the end of its field: reading on would carry a key into a name.
/// @param read cam_get_ap or cam_get_client.
/// @return 0 or -1.
int with_settings(int (*read)(_wireless_setting*), int (*request)(_wireless_setting&)) {
    _wireless_setting stored{};
    if (read(&stored) != 0)
        return -1;
    end_text(stored.client_ssid);
    end_text(stored.client_bssid);
    end_text(stored.client_key);
    end_text(stored.ap_ssid);
    end_text(stored.ap_key);
    return request(stored);
}

} // namespace

int isMtkWifi() {
    if (access(path::usb_devices, F_OK) == 0) {
        const unique_file devices = open_file(path::usb_devices, "r");
        return devices != nullptr && lists(devices.get(), "Vendor=148f") ? 1 : 0;
    }
    const unique_pipe devices = read_program("lsusb");
    return devices != nullptr && lists(devices.get(), "148f") ? 1 : 0;
}

// Whichever adapter is plugged in

int run_ap_mode(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    return isMtkWifi() ? do_ap_mode_mtk(ssid, auth, enc, key)
                       : do_ap_mode_realtek(ssid, auth, enc, key);
}

int run_infra_mode(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc, char* key,
                   int channel, unsigned char key_index) {
    return isMtkWifi() ? do_infra_mode_mtk(ssid, bssid, auth, enc, key, channel, key_index)
                       : do_infra_mode_realtek(ssid, auth, enc, key);
}

int run_repeater_mode(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                      char* client_ssid, char* client_bssid, auth_from_cam client_auth,
                      enc_from_cam client_enc, char* client_key, int channel) {
    return isMtkWifi()
               ? do_repeater_mode_mtk(ap_ssid, ap_auth, ap_enc, ap_key, client_ssid, client_bssid,
                                      client_auth, client_enc, client_key, channel)
               : do_repeater_mode_realtek(ap_ssid, ap_auth, ap_enc, ap_key, client_ssid,
                                          client_auth, client_enc, client_key);
}

int run_infra_mode_base_db() {
    return isMtkWifi() ? do_infra_mode_base_db_mtk() : do_infra_mode_base_db_realtek();
}

int run_repeater_mode_base_db() {
    return isMtkWifi() ? do_repeater_mode_base_db_mtk() : do_repeater_mode_base_db_realtek();
}

// MediaTek. Explicit requests always join the given BSSID on the given channel.

int do_ap_mode_mtk(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    return run_request<wlan>([=](wlan& radio) { return radio.do_ap_mode(ssid, auth, enc, key); });
}

int do_infra_mode_mtk(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc, char* key,
                      int channel, unsigned char key_index) {
    return run_request<wlan>([=](wlan& radio) {
        return radio.do_infra_mode(ssid, bssid, auth, enc, key, channel, APCLI_BY_BSSID, key_index);
    });
}

int do_repeater_mode_mtk(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                         char* client_ssid, char* client_bssid, auth_from_cam client_auth,
                         enc_from_cam client_enc, char* client_key, int channel) {
    return run_request<wlan>([=](wlan& radio) {
        return radio.do_repeater_mode(ap_ssid, ap_auth, ap_enc, ap_key, client_ssid, client_bssid,
                                      client_auth, client_enc, client_key, channel, APCLI_BY_BSSID,
                                      1);
    });
}

int do_ap_mode_base_db_mtk() {
    return with_settings(cam_get_ap, [](_wireless_setting& stored) {
        return run_request<wlan>([&](wlan& radio) {
            const int result =
                radio.do_ap_mode(stored.ap_ssid, stored.ap_auth, stored.ap_enc, stored.ap_key);
            // Only the stored access point leaves its channel to the driver; an explicit one keeps
            // the channel that the radio is on.
            if (result == 0)
                radio.set_channel_algorithm(mtk::access_point_channel_algorithm);
            return result;
        });
    });
}

int do_infra_mode_base_db_mtk() {
    return with_settings(cam_get_client, [](_wireless_setting& stored) {
        return run_request<wlan>([&](wlan& radio) {
            return radio.do_infra_mode(stored.client_ssid, stored.client_bssid, stored.client_auth,
                                       stored.client_enc, stored.client_key, stored.client_channel,
                                       stored.client_apcli_mode, stored.client_key_index);
        });
    });
}

int do_repeater_mode_base_db_mtk() {
    return with_settings(cam_get_ap, [](_wireless_setting& stored) {
        return run_request<wlan>([&](wlan& radio) {
            return radio.do_repeater_mode(stored.ap_ssid, stored.ap_auth, stored.ap_enc,
                                          stored.ap_key, stored.client_ssid, stored.client_bssid,
                                          stored.client_auth, stored.client_enc, stored.client_key,
                                          stored.client_channel, stored.client_apcli_mode,
                                          static_cast<char>(stored.client_key_index));
        });
    });
}

// Realtek. Every mode stops a running wpa_supplicant first.

int do_ap_mode_realtek(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    return run_request<wext>([=](wext& radio) { return radio.do_ap_mode(ssid, auth, enc, key); },
                             true);
}

int do_infra_mode_realtek(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    return run_request<wext>([=](wext& radio) { return radio.do_infra_mode(ssid, auth, enc, key); },
                             true);
}

int do_repeater_mode_realtek(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc,
                             char* ap_key, char* client_ssid, auth_from_cam client_auth,
                             enc_from_cam client_enc, char* client_key) {
    return run_request<wext>(
        [=](wext& radio) {
            return radio.do_repeater_mode(ap_ssid, ap_auth, ap_enc, ap_key, client_ssid,
                                          client_auth, client_enc, client_key);
        },
        true);
}

int do_ap_mode_base_db_realtek() {
    return with_settings(cam_get_ap, [](_wireless_setting& stored) {
        return do_ap_mode_realtek(stored.ap_ssid, stored.ap_auth, stored.ap_enc, stored.ap_key);
    });
}

int do_infra_mode_base_db_realtek() {
    return with_settings(cam_get_client, [](_wireless_setting& stored) {
        return do_infra_mode_realtek(stored.client_ssid, stored.client_auth, stored.client_enc,
                                     stored.client_key);
    });
}

int do_repeater_mode_base_db_realtek() {
    return with_settings(cam_get_ap, [](_wireless_setting& stored) {
        return do_repeater_mode_realtek(stored.ap_ssid, stored.ap_auth, stored.ap_enc,
                                        stored.ap_key, stored.client_ssid, stored.client_auth,
                                        stored.client_enc, stored.client_key);
    });
}
