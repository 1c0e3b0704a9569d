#include "dispatch/driver_request.h"
#include "dispatch/stored_settings.h"
#include "libwlan/modes.h"

int do_ap_mode_realtek(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    wext radio;
    if (radio.init(true) != 0)
        return -1;
    return end_request(radio, radio.do_ap_mode(ssid, auth, enc, key));
}

int do_infra_mode_realtek(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    wext radio;
    if (radio.init(true) != 0)
        return -1;
    return end_request(radio, radio.do_infra_mode(ssid, auth, enc, key));
}

int do_repeater_mode_realtek(char* ap_ssid, auth_from_cam ap_auth, enc_from_cam ap_enc,
                             char* ap_key, char* client_ssid, auth_from_cam client_auth,
                             enc_from_cam client_enc, char* client_key) {
    wext radio;
    if (radio.init(true) != 0)
        return -1;
    return end_request(radio, radio.do_repeater_mode(ap_ssid, ap_auth, ap_enc, ap_key, client_ssid,
                                                     client_auth, client_enc, client_key));
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
