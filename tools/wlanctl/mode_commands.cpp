// SPDX-License-Identifier: MIT
// wlanctl join, repeat and ap.

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <CLI/CLI.hpp>

#include "libwlan/access_point.h"
#include "libwlan/modes.h"

#include "adapter.h"
#include "commands.h"
#include "daemons.h"
#include "network_options.h"
#include "security.h"

namespace {

constexpr char any_bssid[] = "00:00:00:00:00:00";

struct mode_options {
    bool stored = false;
    network_options access_point;
    network_options network; ///< to join
    std::string bssid = any_bssid;
    int channel = 0;
    int key_index = 1;
};

std::string bssid_problem(const std::string& text) {
    bool fits = text.size() == 17;
    for (std::size_t i = 0; fits && i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        fits = i % 3 == 2 ? c == ':' : std::isxdigit(c) != 0;
    }
    return fits ? ""
                : "a BSSID is six two-digit hexadecimal numbers with colons, as 02:00:5e:00:00:01";
}

/// The channels of 20 MHz that there are; 0 has the driver search.
constexpr struct channel_range {
    int first;
    int last;
    int step;
} channels[] = {{0, 14, 1}, {36, 64, 4}, {100, 144, 4}, {149, 177, 4}, {184, 196, 4}};

std::string channel_problem(const std::string& text) {
    int channel = -1;
    const char* const end = text.data() + text.size();
    const bool is_number = std::from_chars(text.data(), end, channel).ptr == end;
    const bool exists = std::any_of(std::begin(channels), std::end(channels),
                                    [channel](const channel_range& range) {
                                        return channel >= range.first && channel <= range.last &&
                                               (channel - range.first) % range.step == 0;
                                    });
    return is_number && exists ? "" : "there is no channel " + text;
}

// What the family of the adapter cannot do
// ----------------------------------------------------------------------------------------------

/// hostapd and wpa_supplicant are configured without WEP; the access point would be left open.
void check_cipher(const adapter& found, const network_options& network) {
    if (!found.mediatek && network.enc == ENC_WEP)
        throw CLI::ValidationError("a Realtek adapter does no WEP", "use wpa2psk");
}

void check_access_point(const adapter& found, const network_options& network) {
    check_cipher(found, network);
    if (!found.mediatek && network.key.size() > 63) {
        throw CLI::ValidationError("the access point of a Realtek adapter takes no hexadecimal key",
                                   "use 8 to 63 characters");
    }
}

void check_station(const adapter& found, const mode_options& options) {
    check_cipher(found, options.network);
    if (found.mediatek)
        return;
    if (options.network.auth == AUTH_MIXED_PSK) {
        throw CLI::ValidationError("a Realtek adapter does not join as mixed",
                                   "use wpa2psk, or wpapsk for an old access point");
    }
    if (options.bssid != any_bssid || options.channel != 0 || options.key_index != 1) {
        throw CLI::ValidationError("a Realtek adapter's daemon chooses the access point by itself",
                                   "leave out --bssid, --channel and --key-index");
    }
}

// The modes
// ----------------------------------------------------------------------------------------------

/// @param mode returns 0 for success; what it configures is named by `what`.
/// @param daemons that it starts.
template <typename Mode>
answer run_mode(const std::string& what, const std::vector<daemon_process>& daemons, bool mediatek,
                Mode mode) {
    umask(S_IRWXG | S_IRWXO); // the daemons' files hold the key
    if (mode() != 0) {
        throw failure(
            what + ": not set up",
            "the message of the store, driver or daemon stands above; see also: wlanctl adapter");
    }
    const std::string missing = missing_daemon(daemons, mediatek);
    if (!missing.empty()) {
        throw failure(what + ": " + missing + " does not run",
                      "what it said stands above; see also: wlanctl doctor");
    }
    return {{"done", what + ": configured"}, {"next", "see how it is doing with: wlanctl status"}};
}

/// The network and how it is protected, so that nobody opens one without seeing it.
std::string told(const network_options& network) {
    return '"' + network.ssid + "\" (" + word_of(network.auth) + ", " + word_of(network.enc) + ")";
}

answer start_access_point(mode_options& options) {
    network_options& network = options.access_point;
    settle(network);
    const adapter found = find_adapter();
    check_access_point(found, network);
    return run_mode("access point " + told(network), {hostapd_daemon}, found.mediatek, [&network] {
        return run_ap_mode(network.ssid.data(), network.auth, network.enc, network.key.data());
    });
}

answer stop_access_point() {
    find_adapter();
    run_stop_ap_mode();
    return {{"done", "access point: stopped"}};
}

answer join(mode_options& options) {
    network_options& network = options.network;
    settle(network);
    const adapter found = find_adapter();
    check_station(found, options);
    return run_mode(
        "station for " + told(network), {supplicant_daemon}, found.mediatek, [&options, &network] {
            return run_infra_mode(network.ssid.data(), options.bssid.data(), network.auth,
                                  network.enc, network.key.data(), options.channel,
                                  static_cast<unsigned char>(options.key_index));
        });
}

answer repeat(mode_options& options) {
    network_options& own = options.access_point;
    network_options& other = options.network;
    settle(own);
    settle(other);
    const adapter found = find_adapter();
    check_access_point(found, own);
    check_station(found, options);
    return run_mode("repeater " + told(own) + " for " + told(other),
                    {hostapd_daemon, supplicant_daemon}, found.mediatek, [&] {
                        return run_repeater_mode(own.ssid.data(), own.auth, own.enc, own.key.data(),
                                                 other.ssid.data(), options.bssid.data(),
                                                 other.auth, other.enc, other.key.data(),
                                                 options.channel);
                    });
}

// Their options
// ----------------------------------------------------------------------------------------------

void add_station_options(CLI::App& command, mode_options& options, const std::string& name_option) {
    add_network_options(command, options.network, "the network to join", name_option);
    command.add_option("--bssid", options.bssid, "Join this access point only (MediaTek)")
        ->check(bssid_problem);
    command.add_option("--channel", options.channel, "Join on this channel (MediaTek); 0 searches")
        ->check(CLI::Validator(channel_problem, "0-14|36-64|100-144|149-177|184-196"));
}

/// What a command does, with --stored and without.
struct mode {
    const char* name;
    std::vector<daemon_process> daemons; ///< with --stored
    int (*run_stored)();
    answer (*run)(mode_options&);
};

answer run_stored(const mode& mode, const std::vector<CLI::Option*>& others) {
    for (const CLI::Option* other : others) {
        if (other->count() > 0)
            throw CLI::ExcludesError("--stored", other->get_name());
    }
    const adapter found = find_adapter();
    return run_mode(std::string(mode.name) + " from the stored settings", mode.daemons,
                    found.mediatek, mode.run_stored);
}

/// Adds --stored, which stands for all other options, and what is to be done.
void finish(CLI::App& command, const std::shared_ptr<mode_options>& options, const mode& mode,
            answer& result) {
    const auto others = command.get_options();
    command.add_flag("--stored", options->stored, "Use the camera's stored settings");
    command.callback([others, options, mode, &result] {
        result = options->stored ? run_stored(mode, others) : mode.run(*options);
    });
}

void add_access_point(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<mode_options>();
    auto& command = *wlanctl.add_subcommand("ap", "Start or stop the camera's access point");
    command.require_subcommand(1);
    auto& start = *command.add_subcommand("start", "Start the access point");
    add_network_options(start, options->access_point, "the camera's own network", "--ssid");
    finish(start, options,
           {"access point", {hostapd_daemon, dhcp_daemon}, run_ap_mode_base_db, start_access_point},
           result);
    command.add_subcommand("stop", "Stop the access point and its DHCP server")
        ->callback([&result] { result = stop_access_point(); });
}

void add_join(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<mode_options>();
    auto& command = *wlanctl.add_subcommand("join", "Join a network as a station");
    add_station_options(command, *options, "SSID");
    command.add_option("--key-index", options->key_index, "Number of the WEP key (MediaTek)")
        ->check(CLI::Range(1, 4, "1-4"));
    finish(command, options, {"station", {supplicant_daemon}, run_infra_mode_base_db, join},
           result);
}

void add_repeat(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<mode_options>();
    auto& command = *wlanctl.add_subcommand("repeat", "Join a network and offer an access point");
    add_network_options(command, options->access_point, "the camera's own network", "--ap-ssid",
                        "--ap-");
    add_station_options(command, *options, "--ssid");
    finish(command, options,
           {"repeater", {hostapd_daemon, supplicant_daemon}, run_repeater_mode_base_db, repeat},
           result);
}

} // namespace

void add_mode_commands(CLI::App& wlanctl, answer& result) {
    add_access_point(wlanctl, result);
    add_join(wlanctl, result);
    add_repeat(wlanctl, result);
}
