#include "dispatch/driver_request.h"
#include "dispatch/stored_settings.h"
#include "libwlan/modes.h"
#include "mtk/channel_algorithm.h"

// Explicit requests always join the given BSSID on the given channel.

int do_ap_mode_mtk(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    wlan radio;
    if (radio.init() != 0)
        return -1;
    return end_request(radio, radio.do_ap_mode(ssid, auth, enc, key));
}

int do_infra_mode_mtk(char* ssid, char* bssid, auth_from_cam auth, enc_from_cam enc, char* key,
                      int channel, unsigned char key_index) {
    wlan radio;
    if (radio.init() != 0)
        return -1;
    return end_request(radio, radio.do_infra_mode(ssid, bssid, auth, enc, key, channel,
                                                  APCLI_BY_BSSID, key_index));
}

int do_repeater_mode_mtk(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc, char* ap_key,
                         char* client_ssid, char* client_bssid, auth_from_cam client_auth,
                         enc_from_cam client_enc, char* client_key, int channel) {
    wlan radio;
    if (radio.init() != 0)
        return -1;
    return end_request(radio, radio.do_repeater_mode(ap_ssid, ap_auth, ap_enc, ap_key, client_ssid,
                                                     client_bssid, client_auth, client_enc,
                                                     client_key, channel, APCLI_BY_BSSID, 1));
}

int do_ap_mode_base_db_mtk() {
    return with_settings(cam_get_ap, [](_wireless_setting& stored) {
        wlan radio;
        if (radio.init() != 0)
            return -1;
        const int result =
            radio.do_ap_mode(stored.ap_ssid, stored.ap_auth, stored.ap_enc, stored.ap_key);
        // Only the stored access point leaves its channel to the driver; an explicit one keeps the
        // channel that the radio is on.
        if (result == 0)
            radio.set_channel_algorithm(access_point_channel_algorithm);
        return end_request(radio, result);
    });
}

int do_infra_mode_base_db_mtk() {
    return with_settings(cam_get_client, [](_wireless_setting& stored) {
        wlan radio;
        if (radio.init() != 0)
            return -1;
        return end_request(
            radio, radio.do_infra_mode(stored.client_ssid, stored.client_bssid, stored.client_auth,
                                       stored.client_enc, stored.client_key, stored.client_channel,
                                       stored.client_apcli_mode, stored.client_key_index));
    });
}

int do_repeater_mode_base_db_mtk() {
    return with_settings(cam_get_ap, [](_wireless_setting& stored) {
        wlan radio;
        if (radio.init() != 0)
            return -1;
        return end_request(
            radio, radio.do_repeater_mode(stored.ap_ssid, stored.ap_auth, stored.ap_enc,
                                          stored.ap_key, stored.client_ssid, stored.client_bssid,
                                          stored.client_auth, stored.client_enc, stored.client_key,
                                          stored.client_channel, stored.client_apcli_mode,
                                          static_cast<char>(stored.client_key_index)));
    });
}
