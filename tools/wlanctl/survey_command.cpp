// SPDX-License-Identifier: MIT
// wlanctl survey.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <strings.h>

#include <CLI/CLI.hpp>

#include "adapter.h"
#include "air.h"
#include "air_table.h"
#include "beacons.h"
#include "channel_load.h"
#include "commands.h"
#include "display.h"
#include "mode_request.h"
#include "request_lock.h"

namespace {

struct survey_options {
    request_options request;
    bool no_trigger = false;
    bool all = false;
    bool channels = false;
    std::string sort = "signal";
};

bool comes_before(const sites& a, const sites& b, bool by_name) {
    return by_name ? compare_by_ssid(a, b) : strength(a) > strength(b);
}

bool comes_before(const beacon& a, const beacon& b, bool by_name) {
    return by_name ? strcasecmp(a.name, b.name) < 0 : strength(a) > strength(b);
}

/// Keeps the driver's order of equals. std::stable_sort() calls what C++17 deprecates, and Clang
/// warns of that.
template <typename Entry>
void sort(std::vector<Entry>& list, const std::string& order) {
    const auto before = [&](const Entry& a, const Entry& b) {
        return comes_before(a, b, order == "name");
    };
    for (auto next = list.begin(); next != list.end(); ++next)
        std::rotate(std::upper_bound(list.begin(), next, *next, before), next, next + 1);
}

answer as_told(const answer& networks, bool all) {
    answer told = {{"listed", static_cast<int>(networks.fields().size())}, {"networks", networks}};
    if (networks.fields().empty()) {
        told.set("next", "see what the driver said with --verbose, and: wlanctl adapter");
    } else if (const display display = answer_display(); all || display.is_terminal) {
        told.draw(draw_networks(networks, all, display));
    }
    return told;
}

answer tell_names(bool mediatek, const survey_options& options) {
    std::vector<sites> list = survey_air(mediatek, !options.no_trigger);
    sort(list, options.sort);
    answer networks = answer::list();
    for (const sites& site : list)
        networks.push_back(describe(site, mediatek));
    return as_told(networks, false);
}

answer tell_all(bool mediatek, const survey_options& options) {
    std::vector<beacon> list = survey_beacons(mediatek, !options.no_trigger);
    sort(list, options.sort);
    if (options.channels) {
        answer load = load_of_channels(list);
        load.draw(draw_channels(load, answer_display()));
        return load;
    }
    answer networks = answer::list();
    for (const beacon& heard : list)
        networks.push_back(describe(heard));
    return as_told(networks, true);
}

answer tell(const survey_options& options) {
    const bool mediatek = find_adapter().mediatek;
    if (options.no_trigger && !mediatek)
        throw CLI::ValidationError("a Realtek adapter always scans", "leave out --no-trigger");
    const request_lock lock("survey", options.request.lock_wait);
    return options.all || options.channels ? tell_all(mediatek, options)
                                           : tell_names(mediatek, options);
}

} // namespace

void add_survey_command(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<survey_options>();
    auto& command = *wlanctl.add_subcommand("survey", "Scan, and list the networks in range");
    command.add_flag("--no-trigger", options->no_trigger,
                     "List what the driver heard last, without a scan (MediaTek)");
    command.add_flag("--all", options->all,
                     "Every BSSID, also hidden ones and those that cannot be joined");
    command.add_flag("--channels", options->channels,
                     "How full each channel is, and the clearest of 1, 6 and 11");
    command.add_option("--sort", options->sort, "Order of the list")
        ->check(CLI::IsMember({"signal", "name"}))
        ->capture_default_str();
    add_lock_option(command, options->request);
    command.footer(
        "A name as it stands here can be given to join, unless a narrow terminal cut it ('~').\n"
        "Without --all not listed: hidden networks, those with a login on a server (MediaTek), "
        "WEP\n"
        "(Realtek), and of one name all but one. On Realtek a login on a server is listed as "
        "WPA2-PSK,\nand joining it fails.\n"
        "A MediaTek driver that refuses leaves the list empty and the exit status 0.\n"
        "With --json: listed, networks [name, bssid, channel, band, security, and signal_percent "
        "or\n"
        "signal_dbm]; with --all frequency_mhz, both signals, and null for a name that is hidden.\n"
        "With --channels: clearest, channels [channel, band, networks, overlapping, strongest_dbm "
        "or\n"
        "strongest_percent]. What the driver did not tell is null.");
    command.callback([options, &result] { result = tell(*options); });
}
