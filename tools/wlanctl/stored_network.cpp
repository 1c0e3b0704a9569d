// SPDX-License-Identifier: MIT
// Requests for what is stored.

#include "stored_network.h"

#include <cstring>

#include "field.h"
#include "libwlan/access_point.h"
#include "libwlan/modes.h"
#include "libwlan/store.h"

namespace {

_wireless_setting read(int (*get)(_wireless_setting*), const char* what) {
    _wireless_setting setting{};
    if (get(&setting) != 0)
        throw because({reason::store_failed}, what);
    return setting;
}

target network_of(const _wireless_setting& setting) {
    return {text_of(setting.client_ssid), setting.client_enc != ENC_NONE, false};
}

} // namespace

mode_request stored_access_point() {
    const _wireless_setting setting = read(cam_get_ap, "access point from the stored settings");
    mode_request request = {"ap start",
                            "access point from the stored settings",
                            run_ap_mode_base_db,
                            {hostapd_daemon, dhcp_daemon}};
    request.opens = true;
    request.access_point = text_of(setting.ap_ssid);
    request.dhcp_server = true;
    return request;
}

mode_request stored_station() {
    const _wireless_setting setting = read(cam_get_client, "station from the stored settings");
    mode_request request = {
        "join", "station from the stored settings", run_infra_mode_base_db, {supplicant_daemon}};
    request.joins = true;
    request.network = network_of(setting);
    return request;
}

mode_request stored_repeater() {
    const _wireless_setting setting = read(cam_get_ap, "repeater from the stored settings");
    mode_request request = {"repeat",
                            "repeater from the stored settings",
                            run_repeater_mode_base_db,
                            {hostapd_daemon, supplicant_daemon}};
    request.joins = true;
    request.network = network_of(setting);
    request.opens = true;
    request.access_point = text_of(setting.ap_ssid);
    return request;
}

station_record::~station_record() {
    key.resize(key.capacity());
    explicit_bzero(key.data(), key.size());
}

void store_station(const station_record& station) {
    constexpr char any_bssid[] = "00:00:00:00:00:00";
    const std::string bssid = station.bssid == any_bssid ? "" : station.bssid;
    _wireless_setting setting{};
    cam_get_client(&setting); // what a store keeps of its own; there may be no network yet
    setting.client_enabled = station.enabled ? 1 : 0;
    fill(setting.client_ssid, station.ssid);
    fill(setting.client_bssid, bssid);
    fill(setting.client_key, station.key);
    setting.client_auth = station.auth;
    setting.client_enc = station.enc;
    setting.client_apcli_mode = bssid.empty() ? APCLI_BY_SSID : APCLI_BY_BSSID;
    setting.client_channel = station.channel;
    setting.client_key_index = static_cast<unsigned char>(station.key_index);
    _cam_actions no_actions{};
    const int result = cam_set_client(&setting, &no_actions, 0, 0);
    explicit_bzero(&setting, sizeof setting);
    if (result != 0)
        throw because({reason::store_failed}, "storing the network");
}

bool is_stored_as_protected(const std::string& ssid) {
    _wireless_setting setting{};
    return cam_get_client(&setting) == 0 && text_of(setting.client_ssid) == ssid &&
           setting.client_enc != ENC_NONE;
}
