#include "libwlan/modes.h"

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
