// SPDX-License-Identifier: MIT
// wlanctl survey.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "adapter.h"
#include "air.h"
#include "cancelling.h"
#include "commands.h"
#include "mode_request.h"
#include "request_lock.h"

namespace {

struct survey_options {
    request_options request;
    bool no_trigger = false;
    std::string sort = "signal";
};

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
    take_ending_signals();
    const request_lock lock("survey", options.request.lock_wait);
    std::vector<sites> list = survey_air(mediatek, !options.no_trigger);
    sort(list, options.sort);
    answer networks = answer::list();
    for (const sites& site : list)
        networks.push_back(describe(site, mediatek));
    answer told = {{"listed", static_cast<int>(list.size())}, {"networks", networks}};
    if (list.empty())
        told.set("next", "see what the driver said with --verbose, and: wlanctl adapter");
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
    add_lock_option(command, options->request);
    command.footer("Not listed: hidden networks, those with a login on a server (MediaTek), WEP "
                   "(Realtek).\n"
                   "On Realtek a login on a server is listed as WPA2-PSK, and joining it fails.\n"
                   "A MediaTek driver that refuses leaves the list empty and the exit status 0.\n"
                   "With --json: listed, networks [name, bssid, channel, band, security, and "
                   "signal_percent or\n"
                   "signal_dbm]; channel and band are null when the driver told none.");
    command.callback([options, &result] { result = tell(*options); });
}
