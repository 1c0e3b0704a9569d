#pragma once

// A store's file in a folder of its own.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "libwlan/store.h"

namespace fs = std::filesystem;

class store_files : public testing::Test {
protected:
    store_files() {
        std::string pattern = testing::TempDir() + "store.XXXXXX";
        folder = fs::canonical(mkdtemp(pattern.data()));
        path = folder / "camera.conf";
        setenv("CAMSTORE_FILE", path.c_str(), 1);
    }
    ~store_files() override { fs::remove_all(folder); }

    void write(const std::string& text) const { std::ofstream(path, std::ios::binary) << text; }
    [[nodiscard]] std::string read() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] bool left_copy() const { return fs::exists(path.string() + ".new"); }

    fs::path folder;
    fs::path path;
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
