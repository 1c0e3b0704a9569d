// A store is the firmware's own, and may throw: the program that called hears of it.

#include <functional>

#include "libwlan/libwlan.h"
#include "tests/camera_test.h"

namespace {

struct store_failure {};

using store_exception = camera_test;

TEST_F(store_exception, reaches_the_program) {
    char name[] = "Net";
    char key[] = "passphrase";
    char bssid[] = "02:00:00:00:00:01";
    const std::function<int()> calls[] = {
        [&] { return run_ap_mode(name, AUTH_WPA2PSK, ENC_AES, key); },
        [&] { return run_infra_mode(name, bssid, AUTH_WPA2PSK, ENC_AES, key, 6, 1); },
        [&] { return run_repeater_mode(name, AUTH_OPEN, ENC_NONE, key, name, bssid, AUTH_OPEN, ENC_NONE, key, 6); },
        [] { return run_ap_mode_base_db(); },
        [] { return run_infra_mode_base_db(); },
        [] { return run_repeater_mode_base_db(); },
    };
    for (const char* adapter : {"mediatek", "realtek"}) {
        plug_in(print(R"({"adapter": "%s"})", adapter));
        for (const auto& call : calls)
            EXPECT_THROW(call(), store_failure);
    }
    plug_in(R"({"adapter": "mediatek"})");
    write("/answers/profile", "SSID= Net\nAuthMode= OPEN\n");
    wlan radio;
    radio.init();
    EXPECT_THROW(radio.update_wsc_to_db_and_action(nullptr), store_failure);
    EXPECT_THROW(radio.do_wps(0), store_failure);
}

} // namespace

// In front of the store's own.

int cam_get_ap(_wireless_setting* /*setting*/) {
    throw store_failure{};
}

int cam_get_client(_wireless_setting* /*setting*/) {
    throw store_failure{};
}

int cam_get_system(_system_setting* /*setting*/) {
    throw store_failure{};
}

int PIB::init() {
    throw store_failure{};
}
