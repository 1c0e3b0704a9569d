// SPDX-License-Identifier: MIT
// hostapd's configuration file.

#include "vcamera/model/hostapd_settings.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <sstream>

#include <arpa/inet.h>

#include "vcamera/model/hostapd_keys.h"

namespace {

constexpr long any = LONG_MAX;

constexpr std::string_view stock_drivers = "nl80211 hostap wired none";
constexpr std::string_view adapter_driver = "rtl871xdrv";

// Judges of hostapd's own.

refusal not_zero(const setting_rule& rule, const std::string& value) {
    return std::atoi(value.c_str()) != 0 ? taken : refusal(fill_in(rule.message, rule, value));
}

/// -1 switches fragmentation off.
refusal fragment_length(const setting_rule& rule, const std::string& value) {
    return std::atoi(value.c_str()) == -1 ? taken : in_range(rule, value);
}

refusal whole_number(const setting_rule& rule, const std::string& value) {
    char* end = nullptr;
    const unsigned long number = std::strtoul(value.c_str(), &end, 0);
    if (*end == '\0' && number >= 1 && number <= UINT_MAX)
        return taken;
    return "Invalid " + std::string(rule.key) + "=" + std::to_string(number) +
           "; allowed range 1..4294967295";
}

/// One octet for every two digits of the range.
refusal octets(const setting_rule& rule, const std::string& value) {
    const bool fits =
        of_length(rule, value) == taken && begins_with_octets(value, value.size() / 2);
    return fits ? taken : refusal(fill_in(rule.message, rule, value));
}

refusal hardware_address(const setting_rule& rule, const std::string& value) {
    return is_hardware_address(value) ? taken : refusal(fill_in(rule.message, rule, value));
}

refusal ip_address(const setting_rule& rule, const std::string& value) {
    in6_addr address{};
    return inet_aton(value.c_str(), reinterpret_cast<in_addr*>(&address)) != 0 ||
                   inet_pton(AF_INET6, value.c_str(), &address) == 1
               ? taken
               : refusal(fill_in(rule.message, rule, value));
}

refusal country(const setting_rule& rule, const std::string& value) {
    const bool fits = value.size() >= 2 && value[0] >= 'A' && value[0] <= 'Z' && value[1] >= 'A' &&
                      value[1] <= 'Z';
    return fits ? taken : refusal(fill_in(rule.message, rule, value));
}

refusal ssid_value(const setting_rule& rule, const std::string& value) {
    const auto name = read_text_value(value);
    const bool fits = name && !name->empty() && name->size() <= 32;
    return fits ? taken : refusal(fill_in(rule.message, rule, value));
}

refusal pairwise_ciphers(const setting_rule& /*rule*/, const std::string& value) {
    unsigned bits = 0;
    if (refusal wrong = read_ciphers(value, bits))
        return wrong;
    if ((bits & (cipher_none | cipher_wep40 | cipher_wep104)) != 0)
        return "unsupported pairwise cipher suite '" + value + "'";
    return taken;
}

refusal group_cipher(const setting_rule& /*rule*/, const std::string& value) {
    unsigned bits = 0;
    if (refusal wrong = read_ciphers(value, bits))
        return wrong;
    for (const unsigned cipher :
         {cipher_tkip, cipher_ccmp, cipher_gcmp, cipher_gcmp_256, cipher_ccmp_256}) {
        if (bits == cipher)
            return taken;
    }
    return "unsupported group cipher suite '" + value + "'";
}

constexpr const char* every_manager =
    "WPA-PSK WPA-EAP FT-PSK FT-EAP FT-EAP-SHA384 WPA-PSK-SHA256 WPA-EAP-SHA256 SAE FT-SAE "
    "WPA-EAP-SUITE-B WPA-EAP-SUITE-B-192 FILS-SHA256 FILS-SHA384 FT-FILS-SHA256 FT-FILS-SHA384 "
    "OWE DPP OSEN";

refusal key_management(const setting_rule& /*rule*/, const std::string& value) {
    const std::vector<std::string> words = split_words(value);
    for (const std::string& word : words) {
        if (!is_among(every_manager, word))
            return "invalid key_mgmt '" + word + "'";
    }
    return words.empty() ? refusal("no key_mgmt values configured.") : taken;
}

refusal driver(const setting_rule& rule, const std::string& value) {
    return is_among(stock_drivers, value) ? taken : refusal(fill_in(rule.message, rule, value));
}

// clang-format off
constexpr setting_rule rules[] = {
    // key                        judge             from  to      message
    {"access_network_type",       in_range,         0,    15,     "invalid access_network_type"},
    {"acs_num_scans",             in_range,         1,    100,    "invalid acs_num_scans {number} (expected 1..100)"},
    {"assoc_sa_query_max_timeout", not_zero,        0,    0,      "invalid assoc_sa_query_max_timeout"},
    {"assoc_sa_query_retry_timeout", not_zero,      0,    0,      "invalid assoc_sa_query_retry_timeout"},
    {"auth_algs",                 not_zero,         0,    0,      "no authentication algorithms allowed"},
    {"beacon_int",                in_range,         10,   65535,  "invalid beacon_int {number} (expected 10..65535)"},
    {"bss_load_update_period",    in_range,         0,    100,    "invalid bss_load_update_period {number}"},
    {"bssid",                     hardware_address, 0,    0,      "invalid bssid item"},
    {"chan_util_avg_period",      in_range,         0,    any,    "invalid chan_util_avg_period"},
    {"check_cert_subject",        of_length,        1,    any,    "unknown check_cert_subject '{value}'"},
    {"country_code",              country,          0,    0,      "Invalid country_code '{value}'"},
    {"device_name",               of_length,        0,    32,     "Too long device_name"},
    {"device_type",               device_type},
    {"driver",                    driver,           0,    0,      "invalid/unknown driver '{value}'"},
    {"dtim_period",               in_range,         1,    255,    "invalid dtim_period {number}"},
    {"eap_reauth_period",         in_range,         0,    any,    "invalid period {number}"},
    {"eapol_version",             in_range,         1,    2,      "invalid EAPOL version ({number}): '{value}'."},
    {"extended_key_id",           in_range,         0,    2,      "Invalid extended_key_id={number}; allowed range 0..2"},
    {"fragm_threshold",           fragment_length,  256,  2346,   "invalid fragm_threshold {number}"},
    {"gas_frag_limit",            in_range,         1,    any,    "Invalid gas_frag_limit '{value}'"},
    {"group_cipher",              group_cipher},
    {"group_mgmt_cipher",         one_of,           0,    0,      "invalid group_mgmt_cipher: {value}",
     "AES-128-CMAC BIP-GMAC-128 BIP-GMAC-256 BIP-CMAC-256"},
    {"hessid",                    hardware_address, 0,    0,      "invalid hessid"},
    {"hw_mode",                   one_of,           0,    0,      "unknown hw_mode '{value}'", "a b g ad any"},
    {"macaddr_acl",               in_range,         0,    2,      "unknown macaddr_acl {number}"},
    {"manufacturer",              of_length,        0,    64,     "Too long manufacturer"},
    {"max_num_sta",               in_range,         0,    2007,   "Invalid max_num_sta={number}; allowed range 0..2007"},
    {"min_tx_power",              in_range,         0,    255,    "invalid min_tx_power {number} (expected 0..255)"},
    {"mobility_domain",           octets,           4,    4,      "Invalid mobility_domain '{value}'"},
    {"model_name",                of_length,        0,    32,     "Too long model_name"},
    {"model_number",              of_length,        0,    32,     "Too long model_number"},
    {"os_version",                os_version},
    {"own_ip_addr",               ip_address,       0,    0,      "invalid IP address '{value}'"},
    {"rsn_pairwise",              pairwise_ciphers},
    {"rts_threshold",             in_range,         -1,   65535,  "invalid rts_threshold {number}"},
    {"send_probe_response",       in_range,         0,    1,      "invalid send_probe_response {number} (expected 0 or 1)"},
    {"serial_number",             of_length,        0,    32,     "Too long serial_number"},
    {"ssid",                      of_length,        1,    32,     "invalid SSID '{value}'"},
    {"ssid2",                     ssid_value,       0,    0,      "invalid SSID '{value}'"},
    {"unsol_bcast_probe_resp_interval", in_range,   0,    20,     "invalid unsol_bcast_probe_resp_interval value"},
    {"uuid",                      uuid},
    {"vlan_naming",               in_range,         0,    1,      "invalid naming scheme {number}"},
    {"wep_rekey_period",          in_range,         0,    any,    "invalid period {number}"},
    {"wpa_deny_ptk0_rekey",       in_range,         0,    2,      "Invalid wpa_deny_ptk0_rekey={number}; allowed range 0..2"},
    {"wpa_group_update_count",    whole_number},
    {"wpa_key_mgmt",              key_management},
    {"wpa_pairwise",              pairwise_ciphers},
    {"wpa_pairwise_update_count", whole_number},
    {"wpa_passphrase",            of_length,        8,    63,     "invalid WPA passphrase length {length} (expected 8..63)"},
    {"wpa_psk",                   octets,           64,   64,     "Invalid PSK '{value}'."},
    {"wpa_psk_radius",            in_range,         0,    2,      "unknown wpa_psk_radius {number}"},
    {"wps_nfc_dev_pw_id",         in_range,         16,   65535,  "Invalid wps_nfc_dev_pw_id value"},
    {"wps_rf_bands",              one_of,           0,    0,      "unknown wps_rf_band '{value}'", "ad a g b ag ga"},
    {"wps_state",                 in_range,         0,    2,      "invalid wps_state"},
};
// clang-format on

bool is_known(const std::string& key) {
    return is_among(lenient_hostapd_keys, key) || is_unjudged_hostapd_key(key);
}

refusal judge(const std::string& key, const std::string& value, hostapd_build build) {
    const bool own = build == hostapd_build::adapter || build == hostapd_build::wrapped;
    if (own && key == "driver" && value == adapter_driver)
        return taken;
    if (const setting_rule* rule = find_rule(rules, key))
        return rule->judge(*rule, value);
    return is_known(key) ? taken : refusal("unknown configuration item '" + key + "'");
}

class settings_reader {
public:
    settings_reader(hostapd_settings& settings, hostapd_build build)
        : settings_(settings), build_(build) {}

    /// A comment has its sign in the first column, and blanks belong to keys and values.
    void read_line(const std::string& line) {
        ++number_;
        if (line.empty() || line[0] == '#')
            return;
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos)
            return refuse("invalid line '" + line + "'");
        const std::string key = line.substr(0, equals);
        const std::string value = line.substr(equals + 1);
        const refusal wrong = judge(key, value, build_);
        if (wrong)
            refuse(*wrong);
        if (!wrong || key == "wpa_psk_radius") // which hostapd sets before it looks
            settings_.values[key] = value;
        if (wrong && key == "wpa_key_mgmt") // whose number for a refused one has every bit set
            settings_.values[key] = every_manager;
    }

private:
    void refuse(const std::string& wrong) {
        ++settings_.report.errors;
        if (!wrong.empty())
            settings_.report.messages.push_back("Line " + std::to_string(number_) + ": " + wrong);
    }

    hostapd_settings& settings_;
    hostapd_build build_;
    int number_ = 0;
};

/// What is wrong with settings that are each good by themselves; hostapd stops at the first of
/// them.
std::string contradiction(const hostapd_settings& settings) {
    const auto text = [&](const char* key) {
        const auto found = settings.values.find(key);
        return found == settings.values.end() ? "" : found->second;
    };
    const auto number = [&](const char* key) { return std::atoi(text(key).c_str()); };
    const auto given = [&](const char* key) { return settings.values.count(key) != 0; };
    const bool wpa = number("wpa") != 0;
    const std::string managers = given("wpa_key_mgmt") ? text("wpa_key_mgmt") : "WPA-PSK";
    const bool by_server = number("macaddr_acl") == 2;
    if (number("ieee80211d") != 0 && !given("country_code"))
        return "Cannot enable IEEE 802.11d without setting the country_code";
    if (number("ieee80211h") != 0 && number("ieee80211d") == 0)
        return "Cannot enable IEEE 802.11h without IEEE 802.11d enabled";
    if (number("ieee8021x") != 0 && number("eap_server") == 0 && !given("auth_server_addr"))
        return "Invalid IEEE 802.1X configuration (no EAP authenticator configured).";
    if (wpa && number("wpa_psk_radius") != 0 && !by_server)
        return "WPA-PSK using RADIUS enabled, but no RADIUS checking (macaddr_acl=2) enabled.";
    const bool has_key = given("wpa_psk") || given("wpa_passphrase") || given("wpa_psk_file");
    if (wpa && is_among(managers, "WPA-PSK") && !has_key &&
        (number("wpa_psk_radius") != 2 || !by_server))
        return "WPA-PSK enabled, but PSK or passphrase is not configured.";
    const std::size_t holder = text("nas_identifier").size();
    if (wpa && managers.find("FT-") != std::string::npos && (holder < 1 || holder > 48)) {
        return "FT (IEEE 802.11r) requires nas_identifier to be configured as a 1..48 octet "
               "string";
    }
    const bool discovers =
        !given("fils_discovery_min_interval") || number("fils_discovery_min_interval") != 0;
    if (number("unsol_bcast_probe_resp_interval") != 0 && discovers) {
        return "Cannot enable both FILS discovery and unsolicited broadcast Probe Response at the "
               "same time";
    }
    return "";
}

/// Why a stock hostapd does not serve on this channel, as it says it; nothing when it does.
std::vector<std::string> stock_refusal(int channel, const std::string& capabilities) {
    constexpr int last_free = 11; // beyond it no device may be the first to send
    const auto mhz = [](int number) {
        return std::to_string(number == 14 ? 2484 : 2407 + 5 * number);
    };
    const bool above = capabilities.find("[HT40+]") != std::string::npos;
    const bool below = capabilities.find("[HT40-]") != std::string::npos;
    // 40 MHz take the channel that lies 4 above or below, too.
    const bool fits_above = channel + 4 <= last_free;
    const bool fits_below = channel - 4 >= 1;
    const bool fits = (above && fits_above) || (below && fits_below) || (!above && !below);
    if (channel <= last_free && fits)
        return {};
    std::vector<std::string> said;
    if (channel > last_free) {
        said = {"Frequency " + mhz(channel) +
                    " (primary) not allowed for AP mode, flags: 0x3 NO-IR",
                "Primary frequency not allowed"};
    }
    const int secondary = above ? 1 : below ? -1 : 0;
    said.push_back("wlan1: IEEE 802.11 Configured channel (" + std::to_string(channel) +
                   ") or frequency (" + mhz(channel) +
                   ") (secondary_channel=" + std::to_string(secondary) +
                   ") not found from the channel list of the current mode (1) IEEE 802.11g");
    said.emplace_back("wlan1: IEEE 802.11 Hardware does not support configured channel");
    said.emplace_back("Could not select hw_mode and channel. (-3)");
    return said;
}

} // namespace

std::string judged_hostapd_keys() {
    std::string keys;
    for (const setting_rule& rule : rules)
        keys.append(rule.key).append(" ");
    return keys;
}

bool is_unjudged_hostapd_key(const std::string& key) {
    for (const char* family : {"tx_queue_", "wmm_ac_", "wme_ac_"}) {
        if (key.rfind(family, 0) == 0)
            return true;
    }
    return is_among(unjudged_hostapd_keys, key);
}

hostapd_settings read_hostapd_settings(const std::string& text, hostapd_build build) {
    hostapd_settings settings;
    settings_reader reader(settings, build);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        reader.read_line(line);
    const std::string wrong = contradiction(settings);
    if (!wrong.empty()) {
        ++settings.report.errors;
        settings.report.messages.push_back(wrong);
    }
    return settings;
}

std::vector<std::string> channel_refusal(const hostapd_settings& settings, hostapd_build build) {
    const auto text = [&](const char* key, const char* unset) {
        const auto found = settings.values.find(key);
        return found == settings.values.end() ? unset : found->second;
    };
    const int channel = std::atoi(text("channel", "0").c_str());
    if (channel == 0)
        return {}; // hostapd chooses one; words count as 0, too
    if (!is_among("b g any", text("hw_mode", "b")) || channel < 1 || channel > 14)
        return {"Could not determine operating frequency"};
    if (build == hostapd_build::adapter)
        return {};
    return stock_refusal(channel, text("ht_capab", ""));
}
