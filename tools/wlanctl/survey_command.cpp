// SPDX-License-Identifier: MIT
// wlanctl survey.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "libwlan/survey.h"
#include "libwlan/wlan.h"

#include "adapter.h"
#include "commands.h"

namespace {

struct survey_options {
    bool no_trigger = false;
    std::string sort = "signal";
};

// What stands in a record
// ----------------------------------------------------------------------------------------------

template <std::size_t size>
std::string text_of(const char (&field)[size]) {
    return {field, strnlen(field, size)};
}

/// Only a version-1 table of the MediaTek driver tells dBm, and nothing but them.
bool tells_dbm(const sites& site) {
    return site.rssi < 0;
}

int strength(const sites& site) {
    return tells_dbm(site) ? site.rssi : site.signal;
}

/// The library reckons the channels of a Realtek adapter from the frequency, in steps of 5 MHz from
/// channel 1 on, wherever they really are.
int channel_of(const sites& site, bool mediatek) {
    constexpr int reckoned_14 = 15;
    constexpr int reckoned_5ghz = 518; // for channel 0 of that band
    if (mediatek || site.channel < reckoned_14)
        return std::max(site.channel, 0);
    return site.channel == reckoned_14 ? 14 : std::max(site.channel - reckoned_5ghz, 0);
}

answer describe(const sites& site, bool mediatek) {
    const int channel = channel_of(site, mediatek);
    const std::string cipher = text_of(site.encryption);
    answer told = {{"name", text_of(site.ssid)},
                   {"bssid", text_of(site.bssid)},
                   {"channel", nullptr},
                   {"band", nullptr},
                   {"security", text_of(site.authentication)}};
    if (channel > 0) {
        told.set("channel", channel);
        told.set("band", channel <= 14 ? "2.4 GHz" : "5 GHz");
    }
    if (cipher != "NONE")
        told.set("security", text_of(site.authentication) + " " + cipher);
    told.set(tells_dbm(site) ? "signal_dbm" : "signal_percent", strength(site));
    return told;
}

// The survey
// ----------------------------------------------------------------------------------------------

/// A list that left out lines of the driver's table is as good as any: it cannot be told which.
bool survey_mediatek(std::vector<sites>& list, bool trigger) {
    wlan radio;
    if (radio.init() != 0)
        return false;
    radio.do_site_survey(list, trigger);
    radio.release();
    return true;
}

void show_progress() {
    if (isatty(STDERR_FILENO) == 1)
        std::fputs("Scanning, for some seconds ...\n", stderr);
}

std::vector<sites> survey(bool mediatek, bool trigger) {
    if (trigger)
        show_progress();
    std::vector<sites> list;
    if (mediatek ? !survey_mediatek(list, trigger) : run_site_survey_realtek(list) != 0) {
        throw failure("survey of the air: not done",
                      "the driver's message stands above or on the camera's console; a Realtek "
                      "driver that hears nobody fails, too, and one is busy while wpa_supplicant "
                      "searches: try again in some seconds");
    }
    return list;
}

/// Keeps the driver's order of equals. std::stable_sort() calls what C++17 deprecates, and Clang
/// warns of that.
void sort(std::vector<sites>& list, const std::string& order) {
    const auto before = [&](const sites& a, const sites& b) {
        return order == "name" ? compare_by_ssid(a, b) : strength(a) > strength(b);
    };
    for (auto next = list.begin(); next != list.end(); ++next)
        std::rotate(std::upper_bound(list.begin(), next, *next, before), next, next + 1);
}

answer tell(const survey_options& options) {
    const bool mediatek = find_adapter().mediatek;
    if (options.no_trigger && !mediatek)
        throw CLI::ValidationError("a Realtek adapter always scans", "leave out --no-trigger");
    std::vector<sites> list = survey(mediatek, !options.no_trigger);
    sort(list, options.sort);
    answer networks = answer::list();
    for (const sites& site : list)
        networks.push_back(describe(site, mediatek));
    answer told = {{"listed", static_cast<int>(list.size())}, {"networks", networks}};
    if (list.empty())
        told.set("next", "if the driver's message stands above, see: wlanctl adapter");
    return told;
}

} // namespace

void add_survey_command(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<survey_options>();
    auto& command = *wlanctl.add_subcommand("survey", "Scan, and list the networks in range");
    command.add_flag("--no-trigger", options->no_trigger,
                     "List what the driver heard last, without a scan (MediaTek)");
    command.add_option("--sort", options->sort, "Order of the list")
        ->check(CLI::IsMember({"signal", "name"}))
        ->capture_default_str();
    command.footer("Not listed: hidden networks, those with a login on a server (MediaTek), WEP "
                   "(Realtek).\n"
                   "On Realtek a login on a server is listed as WPA2-PSK, and joining it fails.\n"
                   "A MediaTek driver that refuses leaves the list empty and the exit status 0.\n"
                   "With --json: listed, networks [name, bssid, channel, band, security, and "
                   "signal_percent or\n"
                   "signal_dbm]; channel and band are null when the driver told none.");
    command.callback([options, &result] { result = tell(*options); });
}
