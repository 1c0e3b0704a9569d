// SPDX-License-Identifier: MIT
// How the camera's daemons judge configuration files. scripts/daemon_check compares the same judgements
// with those of Debian's daemons; these rows are what a camera's image meets.

#include <gtest/gtest.h>

#include "vcamera/model/hostapd_settings.h"
#include "vcamera/model/udhcpd_settings.h"
#include "vcamera/model/wpa_supplicant_settings.h"

namespace {

using lines = std::vector<std::string>;

/// As the library writes it.
const std::string hostapd_file = "ctrl_interface=/var/run/hostapd\ninterface=wlan1\nssid=Net\nchannel=11\nwps_state=0\n"
                                 "auth_algs=1\nwpa=2\nrsn_pairwise=TKIP CCMP\nwpa_passphrase=passphrase\n"
                                 "wpa_key_mgmt=WPA-PSK\nwpa_group_rekey=86400\ndriver=rtl871xdrv\nbeacon_int=100\n"
                                 "hw_mode=g\nieee80211n=1\nwme_enabled=1\n"
                                 "ht_capab=[SHORT-GI-20][SHORT-GI-40][HT40+]\nmax_num_sta=8\n";

TEST(hostapd_settings, only_the_adapter_s_build_knows_its_driver) {
    const struct {
        hostapd_build build;
        lines messages;
    } rows[] = {
        {hostapd_build::adapter, {}},
        {hostapd_build::stock, {"Line 12: invalid/unknown driver 'rtl871xdrv'"}},
    };
    for (const auto& row : rows) {
        const file_report report = read_hostapd_settings(hostapd_file, row.build).report;
        EXPECT_EQ(report.messages, row.messages);
        EXPECT_EQ(report.errors, static_cast<int>(row.messages.size()));
    }
}

TEST(hostapd_settings, wrong_line_is_told_with_its_number) {
    const struct {
        const char* line;
        const char* message; // null when it is taken
    } rows[] = {
        {"max_num_stations=8", "unknown configuration item 'max_num_stations'"},
        {" ssid=Net", "unknown configuration item ' ssid'"},
        {"ssid", "invalid line 'ssid'"},
        {"# ssid", nullptr},
        {"ssid=", "invalid SSID ''"},
        {"ssid=a name of thirty-two bytes, full", nullptr},
        {"ssid=a name of thirty-two bytes, full!", "invalid SSID 'a name of thirty-two bytes, full!'"},
        {"hw_mode=n", "unknown hw_mode 'n'"},
        {"driver=wext", "invalid/unknown driver 'wext'"},
        {"channel=abc", nullptr}, // counts as 0
        {"ht_capab=[JUNK]", nullptr},
        {"beacon_int=9", "invalid beacon_int 9 (expected 10..65535)"},
        {"beacon_int=100 TU", nullptr}, // ends where its digits do
        {"max_num_sta=2008", "Invalid max_num_sta=2008; allowed range 0..2007"},
        {"auth_algs=none", "no authentication algorithms allowed"},
        {"wps_state=3", "invalid wps_state"},
        {"rsn_pairwise=AES", "invalid cipher 'AES'."},
        {"wpa_pairwise=WEP40", "unsupported pairwise cipher suite 'WEP40'"},
        {"wpa_key_mgmt=WPA2-PSK", "invalid key_mgmt 'WPA2-PSK'"},
        {"wpa_passphrase=1234567", "invalid WPA passphrase length 7 (expected 8..63)"},
        {"model_name=a model of thirty-three characters", "Too long model_name"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        const std::string text = "interface=wlan1\n" + std::string(row.line) + "\n";
        const file_report report = read_hostapd_settings(text, hostapd_build::stock).report;
        EXPECT_EQ(report.messages, row.message == nullptr ? lines{} : lines{"Line 2: " + std::string(row.message)});
    }
}

TEST(hostapd_settings, contradictions_are_one_error_more) {
    const struct {
        const char* file;
        const char* message;
    } rows[] = {
        {"wpa=2\n", "WPA-PSK enabled, but PSK or passphrase is not configured."},
        {"ieee80211d=1\n", "Cannot enable IEEE 802.11d without setting the country_code"},
        {"wpa=2\nwpa_key_mgmt=FT-PSK\n",
         "FT (IEEE 802.11r) requires nas_identifier to be configured as a 1..48 octet string"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const file_report report = read_hostapd_settings(row.file, hostapd_build::stock).report;
        EXPECT_EQ(report.messages, lines{row.message});
        EXPECT_EQ(report.errors, 1);
    }
}

// Measured with hostapd 2.10 on simulated radios of the world's regulatory domain.
TEST(hostapd_settings, forty_mhz_fit_on_some_channels_only) {
    const struct {
        const char* channel;
        const char* capabilities;
        bool stock, adapter; // whether each comes up
    } rows[] = {
        {"1", "[HT40+]", true, true},   {"7", "[HT40+]", true, true},
        {"8", "[HT40+]", false, true},  {"9", "[HT40+]", false, true},
        {"11", "[HT40+]", false, true}, {"13", "[HT40+]", false, true},
        {"4", "[HT40-]", false, true},  {"5", "[HT40-]", true, true},
        {"11", "[HT40-]", true, true},  {"11", "[HT40+][HT40-]", true, true},
        {"11", "[HT40]", true, true},   {"11", "", true, true},
        {"12", "", false, true},        {"14", "", false, true},
        {"0", "[HT40+]", true, true},   {"15", "", false, false},
        {"36", "", false, false},       {"-1", "", false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.channel) + row.capabilities);
        const std::string text =
            std::string("interface=wlan1\nhw_mode=g\nchannel=") + row.channel + "\nht_capab=" + row.capabilities + "\n";
        const hostapd_settings settings = read_hostapd_settings(text, hostapd_build::stock);
        EXPECT_EQ(channel_refusal(settings, hostapd_build::stock).empty(), row.stock);
        EXPECT_EQ(channel_refusal(settings, hostapd_build::adapter).empty(), row.adapter);
    }
}

TEST(supplicant_settings, wrong_line_is_told_with_its_number) {
    const struct {
        const char* line;
        lines messages;
    } rows[] = {
        {"model_name=a name of thirty-two bytes, full", {}},
        {"model_name=a name of thirty-two bytes, full!",
         {"too long model_name (len=33 max_len=32)", "failed to parse 'model_name=a name of thirty-two bytes, full!'.",
          "Invalid configuration line 'model_name=a name of thirty-two bytes, full!'."}},
        {"device_type=4", {"failed to parse 'device_type=4'.", "Invalid configuration line 'device_type=4'."}},
        {"os_version=1.2",
         {"invalid os_version", "failed to parse 'os_version=1.2'.", "Invalid configuration line 'os_version=1.2'."}},
        {"eapol_version=4",
         {"too large eapol_version (value=4 max_value=3)", "failed to parse 'eapol_version=4'.",
          "Invalid configuration line 'eapol_version=4'."}},
        {"ssid=\"Net\"", {"unknown global field 'ssid=\"Net\"'.", "Invalid configuration line 'ssid=\"Net\"'."}},
        {"  # a note", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        lines expected;
        for (const std::string& message : row.messages)
            expected.push_back("Line 2: " + message);
        const std::string text = "eapol_version=1\n" + std::string(row.line) + "\n";
        EXPECT_EQ(read_supplicant_settings(text).report.messages, expected);
    }
}

TEST(supplicant_settings, wrong_line_spoils_its_network) {
    const struct {
        const char* line;
        lines messages;
    } rows[] = {
        {"ssid=\"Net\"", {}},
        {"ssid=\"a \"b\"\" # note", {}},
        {"ssid=Net", {"failed to parse ssid 'Net'.", "failed to parse ssid 'Net'."}},
        {"ssid=\"Net", {"invalid quotation '\"Net'."}},
        {"ssid", {"Invalid SSID line 'ssid'."}},
        {"key_mgmt=WPA2-PSK",
         {"invalid key_mgmt 'WPA2-PSK'", "no key_mgmt values configured.", "failed to parse key_mgmt 'WPA2-PSK'."}},
        {"proto=RSN WPA3", {"invalid proto 'WPA3'", "failed to parse proto 'RSN WPA3'."}},
        {"pairwise=AES", {"invalid cipher 'AES'.", "failed to parse pairwise 'AES'."}},
        {"psk=\"1234567\"",
         {"Invalid passphrase length 7 (expected: 8..63) '1234567\"'.", "failed to parse psk '\"1234567\"'."}},
        {"psk=passphrase", {"Invalid PSK 'passphrase'.", "failed to parse psk 'passphrase'."}},
        {"scan_ssid=2", {"too large scan_ssid (value=2 max_value=1)", "failed to parse scan_ssid '2'."}},
        {"colour=blue", {"unknown network field 'colour'."}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        lines expected;
        for (const std::string& message : row.messages)
            expected.push_back("Line 2: " + message);
        if (!expected.empty())
            expected.emplace_back("Line 3: failed to parse network block.");
        const supplicant_settings settings =
            read_supplicant_settings("network={\n\t" + std::string(row.line) + "\n}\n");
        EXPECT_EQ(settings.report.messages, expected);
        EXPECT_EQ(settings.networks.size(), row.messages.empty() ? 1U : 0U);
    }
}

TEST(supplicant_settings, network_without_an_end_is_refused) {
    EXPECT_EQ(read_supplicant_settings("network={\n\tssid=\"Net\"\n").report.messages,
              (lines{"Line 2: network block was not terminated properly.", "Line 2: failed to parse network block."}));
}

TEST(udhcpd_settings, wrong_value_is_told_and_left_out) {
    const struct {
        const char* line;
        lines messages;
    } rows[] = {
        {"opt dns\t\t192.168.8.1", {}},
        {"opt dns 192.168.8.1 8.8.8.8", {}},
        {"unknown 1", {}},
        {"opt dns 300.1.1.1", {"bad address '300.1.1.1'", "can't parse line 2 in u"}},
        {"option subnet", {"can't parse line 2 in u"}},
        {"opt", {"bad line 2: 1 tokens found, 2 needed"}},
        {"opt lease -1", {"can't parse line 2 in u"}},
        {"opt timezone -3600", {}},
        {"max_leases 0x10", {"can't parse line 2 in u"}},
        {"opt mtu 0x5dc", {}},
        {"opt staticroutes 10.0.0.0/33 10.1.1.1", {"can't parse line 2 in u"}},
        {"static_lease 00:60:08:11:CE:4E 192.168.0.54", {}},
        {"start nonsense", {"bad address 'nonsense'", "can't parse line 2 in u"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        const udhcpd_settings settings = read_udhcpd_settings("interface wlan1\n" + std::string(row.line) + "\n", "u");
        EXPECT_EQ(settings.messages, row.messages);
        EXPECT_FALSE(settings.ends);
        EXPECT_EQ(settings.values.at("start"), "192.168.0.20"); // which stands for none
    }
}

TEST(udhcpd_settings, unknown_option_and_empty_pool_end_it) {
    const struct {
        const char* file;
        const char* message; // its beginning
    } rows[] = {
        {"opt netmask 255.255.255.0\nopt mtu x\n", "unknown option 'netmask', known options: subnet timezone "},
        {"start 192.168.8.200\nend 192.168.8.100\n", "bad start/end IP range in u"},
        {"opt 9 xyz\n", "malformed hex string 'xyz'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const udhcpd_settings settings = read_udhcpd_settings(row.file, "u");
        EXPECT_TRUE(settings.ends);
        ASSERT_EQ(settings.messages.size(), 1U);
        EXPECT_EQ(settings.messages[0].rfind(row.message, 0), 0U) << settings.messages[0];
    }
}

} // namespace
