// SPDX-License-Identifier: MIT
// A store is the firmware's own. It may throw, of which the program that called hears, and it may fill its texts to
// their last byte, behind which the library does not read.

#include <functional>
#include <optional>

#include "libwlan/libwlan.h"
#include "tests/support/camera_test.h"

namespace {

struct store_failure {};

/// What the store does for the test that runs.
std::function<void(_wireless_setting&)> fill_wireless;
std::function<void(_system_setting&)> fill_system;
std::optional<int> region; // none: it throws

const auto fail = [](auto& /*record*/) { throw store_failure{}; };

char name[] = "Net";
char key[] = "passphrase";
char bssid[] = "02:00:00:00:00:01";

class firmware_store : public camera_test {
protected:
    firmware_store() {
        fill_wireless = fail;
        fill_system = fail;
        region.reset();
    }
};

TEST_F(firmware_store, exception_reaches_the_program) {
    const struct {
        const char* name;
        std::function<int()> call;
    } rows[] = {
        {"access point", [] { return run_ap_mode(name, AUTH_WPA2PSK, ENC_AES, key); }},
        {"station", [] { return run_infra_mode(name, bssid, AUTH_WPA2PSK, ENC_AES, key, 6, 1); }},
        {"repeater",
         [] { return run_repeater_mode(name, AUTH_OPEN, ENC_NONE, key, name, bssid, AUTH_OPEN, ENC_NONE, key, 6); }},
        {"stored access point", run_ap_mode_base_db},
        {"stored station", run_infra_mode_base_db},
        {"stored repeater", run_repeater_mode_base_db},
    };
    for (const char* adapter : {"mediatek", "realtek"}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(print("%s, %s", adapter, row.name));
            plug_in(scene(adapter));
            EXPECT_THROW(row.call(), store_failure);
        }
    }
}

TEST_F(firmware_store, exception_reaches_who_pushed_the_button) {
    plug_in(scene("mediatek").key("answers", {{"profile", {"SSID= Net", "AuthMode= OPEN"}}}));
    wlan radio;
    ASSERT_EQ(radio.init(), 0);
    EXPECT_THROW(radio.do_wps(0), store_failure);
    EXPECT_THROW(radio.update_wsc_to_db_and_action(text("wlan0")), store_failure);
}

template <std::size_t size>
void fill(char (&field)[size], char letter) {
    std::fill_n(field, size, letter);
}

void fill_every_byte(_wireless_setting& setting) {
    setting = {};
    fill(setting.client_ssid, 's');
    fill(setting.client_bssid, 'b');
    fill(setting.client_key, 'k');
    fill(setting.ap_ssid, 'S');
    fill(setting.ap_key, 'K');
    setting.client_auth = setting.ap_auth = AUTH_WPA2PSK;
    setting.client_enc = setting.ap_enc = ENC_AES;
    setting.client_apcli_mode = APCLI_BY_BSSID;
    setting.client_channel = 6;
}

class unterminated_text : public firmware_store {
protected:
    unterminated_text() {
        fill_wireless = fill_every_byte;
        region = 0;
    }
};

TEST_F(unterminated_text, ends_for_the_driver) {
    const struct {
        const char* name;
        int (*request)();
        std::string ssid, key; // as sent; commands have 255 characters at most
    } rows[] = {
        {"repeater", run_repeater_mode_base_db, "ra0 set SSID=" + std::string(63, 'S'),
         "ra0 set WPAPSK=" + std::string(248, 'K')},
        {"station", run_infra_mode_base_db, "wlan0 set ApCliSsid=" + std::string(63, 's'),
         "wlan0 set ApCliWPAPSK=" + std::string(243, 'k')},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(scene("mediatek"));
        EXPECT_EQ(watch(row.request).result, -1); // no driver takes them
        EXPECT_EQ(said().at(4), row.ssid + " = EINVAL");
        EXPECT_EQ(said().at(5), row.key + " = EINVAL");
    }
}

TEST_F(unterminated_text, ends_for_wpa_supplicant) {
    fill_system = [](_system_setting& setting) {
        fill(setting.model_name, 'm');
        fill(setting.manufacturer, 'f');
    };
    plug_in(scene("realtek"));
    EXPECT_EQ(watch(run_infra_mode_base_db).result, 0);
    const std::string file = read("/tmp/wpa_supplicant.conf");
    EXPECT_NE(file.find("\nmodel_name=" + std::string(160, 'm') + "\n"), std::string::npos);
    EXPECT_NE(file.find("\nmanufacturer=" + std::string(800, 'f') + "\n"), std::string::npos);
    EXPECT_NE(file.find("\tssid=\"" + std::string(63, 's') + "\"\n"), std::string::npos);
}

TEST_F(unterminated_text, ends_for_udhcpd) {
    _dhcp_server_setting setting;
    fill(setting.server_address, 'a');
    fill(setting.pool_start, 's');
    fill(setting.pool_end, 'e');
    fill(setting.subnet_mask, 'm');
    plug_in(scene("mediatek"));
    EXPECT_EQ(create_udhcpd_config("ra0", &setting), 0);
    const std::string address(32, 'a');
    EXPECT_EQ(read("/tmp/udhcpd.conf"), "start\t\t" + std::string(32, 's') + "\nend\t\t" + std::string(32, 'e') +
                                            "\ninterface\t\tra0\noption subnet\t" + std::string(32, 'm') +
                                            "\nopt router\t\t" + address + "\nopt dns\t\t" + address + "\n");
}

} // namespace

// In front of the store's own.

int cam_get_ap(_wireless_setting* setting) {
    fill_wireless(*setting);
    return 0;
}

int cam_get_client(_wireless_setting* setting) {
    fill_wireless(*setting);
    return 0;
}

int cam_get_system(_system_setting* setting) {
    fill_system(*setting);
    return 0;
}

int PIB::init() {
    return region.has_value() ? 0 : throw store_failure{};
}
