// SPDX-License-Identifier: MIT
// wlanctl store.

#include <algorithm>
#include <cstddef>
#include <string>

#include <CLI/CLI.hpp>

#include "libwlan/store.h"

#include "commands.h"
#include "field.h"
#include "security.h"

namespace {

/// That there is a key, never the key.
template <std::size_t size>
std::string hidden(const char (&key)[size]) {
    const std::size_t length = text_of(key).size();
    return length == 0 ? "(not set)" : "(set, " + std::to_string(length) + " characters)";
}

answer access_point(const _wireless_setting& setting) {
    return {{"ssid", text_of(setting.ap_ssid)},
            {"auth", word_of(setting.ap_auth)},
            {"enc", word_of(setting.ap_enc)},
            {"key", hidden(setting.ap_key)}};
}

answer client(const _wireless_setting& setting) {
    return {{"enabled", setting.client_enabled == 1},
            {"ssid", text_of(setting.client_ssid)},
            {"bssid", text_of(setting.client_bssid)},
            {"auth", word_of(setting.client_auth)},
            {"enc", word_of(setting.client_enc)},
            {"key", hidden(setting.client_key)},
            {"key_index", setting.client_key_index},
            {"join", setting.client_apcli_mode == APCLI_BY_BSSID ? "bssid" : "ssid"},
            {"channel", setting.client_channel}};
}

answer dhcp_server(const _dhcp_server_setting& setting) {
    return {{"address", text_of(setting.server_address)},
            {"pool_start", text_of(setting.pool_start)},
            {"pool_end", text_of(setting.pool_end)},
            {"netmask", text_of(setting.subnet_mask)}};
}

answer identity(const _system_setting& setting) {
    return {{"model", text_of(setting.model_name)},
            {"manufacturer", text_of(setting.manufacturer)}};
}

answer region() {
    PIB product;
    if (product.init() != 0)
        return nullptr;
    return {{"band_2g", product.getRegion()}, {"band_5g", product.getRegionABand()}};
}

/// @return null when the store cannot give the record.
template <typename Record>
answer section(bool readable, int (*get)(Record*), answer (*tell)(const Record&)) {
    Record record{};
    return readable && get(&record) == 0 ? tell(record) : nullptr;
}

answer show() {
    const answer regions = region();
    const bool readable = !regions.is_null(); // they may be left out, so the store itself failed
    answer settings = {{"access_point", section(readable, cam_get_ap, access_point)},
                       {"client", section(readable, cam_get_client, client)},
                       {"dhcp_server", section(readable, cam_get_dhcp_server, dhcp_server)},
                       {"system", section(readable, cam_get_system, identity)},
                       {"region", regions}};
    const auto unreadable = [](const answer::field& part) { return part.value.is_null(); };
    if (std::any_of(settings.fields().begin(), settings.fields().end(), unreadable)) {
        throw failure("part of the store could not be read",
                      "the store's own message stands above; correct what it names", settings);
    }
    return settings;
}

} // namespace

void add_store_command(CLI::App& wlanctl, answer& result) {
    auto* store = wlanctl.add_subcommand("store", "The camera's stored settings");
    store->require_subcommand(1);
    store->add_subcommand("show", "Show all of them; of keys only their length")
        ->footer(
            "With --json: access_point, client, dhcp_server, system and region, each null when it\n"
            "cannot be read, with the keys that are shown, blanks written as underscores.")
        ->callback([&result] { result = show(); });
}
