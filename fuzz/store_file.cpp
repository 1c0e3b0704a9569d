// SPDX-License-Identifier: MIT
// Hostile input: the store's file, read, written and read again.

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "fuzz/fuzz_check.h"
#include "libwlan/store.h"

namespace {

/// What a change of the client's settings leaves as it is.
struct other_settings {
    _system_setting system{};
    _dhcp_server_setting dhcp_server{};
    int system_result = cam_get_system(&system);
    int dhcp_server_result = cam_get_dhcp_server(&dhcp_server);
};

template <typename Record>
bool same(const Record& left, const Record& right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

/// Whether a changed value cannot make a line too long.
bool has_room(const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.size() > 64)
            return false;
    }
    return true;
}

} // namespace

/// A configuration file. When the client's settings can be read from it, others are stored there.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static const std::string path = std::filesystem::temp_directory_path() / "fuzzed_camera.conf";
    const std::string text(data, data + size);
    std::ofstream(path, std::ios::binary) << text;
    setenv("CAMSTORE_FILE", path.c_str(), 1);

    const other_settings others;
    _wireless_setting before{};
    if (PIB().init() != 0 || cam_get_client(&before) != 0)
        return 0;
    _wireless_setting wanted = before;
    std::strncpy(wanted.client_ssid, text.c_str(), 32);
    std::strncpy(wanted.client_key, text.c_str() + size / 2, 255);
    _cam_actions no_actions{};
    const bool stored = cam_set_client(&wanted, &no_actions, 0, 0) == 0;
    fuzz_check(stored || !has_room(text));
    _wireless_setting after{};
    fuzz_check(cam_get_client(&after) == 0 && same(after, stored ? wanted : before));
    fuzz_check(same(other_settings(), others));
    return 0;
}
