// SPDX-License-Identifier: MIT
// A store's file in a folder of its own.

#pragma once

#include "libwlan/store.h"
#include "tests/support/folder_test.h"

class store_files : public folder_test {
protected:
    store_files() { setenv("CAMSTORE_FILE", path.c_str(), 1); }

    void write(const std::string& text) const { folder_test::write("/camera.conf", text); }
    [[nodiscard]] std::string read() const { return folder_test::read("/camera.conf"); }
    [[nodiscard]] bool left_copy() const { return exists("/camera.conf.new"); }

    const fs::path path = folder + "/camera.conf";
};

inline _wireless_setting client_record(const std::string& ssid, const std::string& key) {
    _wireless_setting record = {};
    record.client_auth = AUTH_WPA2PSK;
    record.client_enc = ENC_AES;
    ssid.copy(record.client_ssid, sizeof record.client_ssid);
    key.copy(record.client_key, sizeof record.client_key);
    return record;
}

inline int set_client(_wireless_setting record) {
    _cam_actions actions = {};
    return cam_set_client(&record, &actions, 0, 0);
}

inline int set_client(const std::string& ssid, const std::string& key) {
    return set_client(client_record(ssid, key));
}
