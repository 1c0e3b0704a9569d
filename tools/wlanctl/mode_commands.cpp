// SPDX-License-Identifier: MIT
// wlanctl join, repeat, disconnect and ap.

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "libwlan/access_point.h"
#include "libwlan/modes.h"

#include "adapter.h"
#include "commands.h"
#include "hearing.h"
#include "mode_request.h"
#include "network_options.h"
#include "progress.h"
#include "request_lock.h"
#include "security.h"
#include "stored_network.h"

namespace {

constexpr char any_bssid[] = "00:00:00:00:00:00";

struct mode_options {
    request_options request;
    bool stored = false;
    bool store = false; ///< the network, once it is joined
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
    if (!found.mediatek && options.network.auth == AUTH_MIXED_PSK) {
        throw CLI::ValidationError("a Realtek adapter does not join as mixed",
                                   "use wpa2psk, or wpapsk for an old access point");
    }
}

void check_station_options(const adapter& found, const mode_options& options) {
    if (found.mediatek)
        return;
    if (options.bssid != any_bssid || options.channel != 0 || options.key_index != 1) {
        throw CLI::ValidationError("a Realtek adapter's daemon chooses the access point by itself",
                                   "leave out --bssid, --channel and --key-index");
    }
}

// The modes
// ----------------------------------------------------------------------------------------------

/// The network and how it is protected, so that nobody opens one without seeing it.
std::string told(const network_options& network) {
    return '"' + network.ssid + "\" (" + word_of(network.auth) + ", " + word_of(network.enc) + ")";
}

answer start_access_point(mode_options& options) {
    network_options& network = options.access_point;
    settle_name(network);
    settle_key(network);
    settle(network);
    const request_lock lock("ap start", options.request.lock_wait);
    const adapter found = find_adapter();
    check_access_point(found, network);
    mode_request request = {"ap start",
                            "access point " + told(network),
                            [&network] {
                                return run_ap_mode(network.ssid.data(), network.auth, network.enc,
                                                   network.key.data());
                            },
                            {hostapd_daemon}};
    request.opens = true;
    request.access_point = network.ssid;
    return carry_out(request, found, options.request);
}

answer stop_access_point(const request_options& options) {
    const request_lock lock("ap stop", options.lock_wait);
    stop_access_point(find_adapter());
    return {{"outcome", "stopped"}, {"done", "access point: stopped"}};
}

answer disconnect(const request_options& options) {
    const request_lock lock("disconnect", options.lock_wait);
    stop_station(find_adapter());
    return {{"outcome", "disconnected"}, {"done", "station: stopped"}};
}

/// Takes what the air tells of the network to join: how it is protected, and its channel. The key
/// is asked for when it needs one.
target look_up(mode_options& options, const adapter& found) {
    network_options& network = options.network;
    target target = {network.ssid, false, false};
    if (says_no_security(network)) {
        const request_lock lock("join", options.request.lock_wait);
        const heard_network heard = hear(network.ssid, found.mediatek);
        target.was_heard = heard.heard;
        if (!heard.heard && !network.has_key) {
            throw because({reason::not_heard, heard.certain},
                          "station for \"" + network.ssid + '"');
        }
        network.auth_word = heard.auth;
        network.enc_word = heard.enc;
        if (found.mediatek && options.channel == 0)
            options.channel = heard.channel;
    }
    settle(network);
    target.is_protected = network.enc != ENC_NONE;
    if (!target.is_protected && is_stored_as_protected(network.ssid)) {
        tell_warning("the network \"" + network.ssid +
                     "\" is open, but stored as a protected one: "
                     "it may be somebody else's");
    }
    return target;
}

void store_network(const mode_options& options) {
    station_record station;
    station.ssid = options.network.ssid;
    station.auth = options.network.auth;
    station.enc = options.network.enc;
    station.key = options.network.key;
    station.bssid = options.bssid;
    station.channel = options.bssid == any_bssid ? 0 : options.channel;
    station.key_index = options.key_index;
    store_station(station);
}

answer join(mode_options& options) {
    network_options& network = options.network;
    settle_name(network);
    settle_key(network);
    const adapter found = find_adapter();
    check_station_options(found, options);
    const target target = look_up(options, found);
    const request_lock lock("join", options.request.lock_wait);
    check_station(found, options);
    mode_request request = {"join",
                            "station for " + told(network),
                            [&options, &network] {
                                return run_infra_mode(
                                    network.ssid.data(), options.bssid.data(), network.auth,
                                    network.enc, network.key.data(), options.channel,
                                    static_cast<unsigned char>(options.key_index));
                            },
                            {supplicant_daemon}};
    request.joins = true;
    request.network = target;
    answer told = carry_out(request, found, options.request);
    if (options.store) {
        store_network(options);
        told.set("stored", true);
    }
    return told;
}

answer store(mode_options& options) {
    settle_name(options.network);
    settle_key(options.network);
    settle(options.network);
    const request_lock lock("store set", options.request.lock_wait);
    store_network(options);
    return {{"outcome", "done"}, {"done", "stored, to be joined: " + told(options.network)}};
}

answer forget(const request_options& options) {
    const request_lock lock("store forget", options.lock_wait);
    station_record nothing;
    nothing.enabled = false;
    store_station(nothing);
    return {{"outcome", "done"}, {"done", "no network is stored to be joined"}};
}

answer repeat(mode_options& options) {
    network_options& own = options.access_point;
    network_options& other = options.network;
    settle_name(own);
    settle_key(own);
    settle(own);
    settle_name(other);
    settle_key(other);
    const adapter found = find_adapter();
    check_station_options(found, options);
    const target target = look_up(options, found);
    const request_lock lock("repeat", options.request.lock_wait);
    check_access_point(found, own);
    check_station(found, options);
    mode_request request = {"repeat",
                            "repeater " + told(own) + " for " + told(other),
                            [&] {
                                return run_repeater_mode(
                                    own.ssid.data(), own.auth, own.enc, own.key.data(),
                                    other.ssid.data(), options.bssid.data(), other.auth, other.enc,
                                    other.key.data(), options.channel);
                            },
                            {hostapd_daemon, supplicant_daemon}};
    request.joins = true;
    request.network = target;
    request.opens = true;
    request.access_point = own.ssid;
    return carry_out(request, found, options.request);
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
    const char* command;
    mode_request (*stored)();
    answer (*run)(mode_options&);
};

answer run_stored(const mode& mode, const mode_options& options,
                  const std::vector<CLI::Option*>& others) {
    for (const CLI::Option* other : others) {
        if (other->count() > 0)
            throw CLI::ExcludesError("--stored", other->get_name());
    }
    const request_lock lock(mode.command, options.request.lock_wait);
    const adapter found = find_adapter();
    return carry_out(mode.stored(), found, options.request);
}

/// Adds --stored, which stands for the options that describe networks, those of the request, and
/// what is to be done.
void finish(CLI::App& command, const std::shared_ptr<mode_options>& options, const mode& mode,
            answer& result) {
    const auto others = command.get_options();
    command.add_flag("--stored", options->stored, "Use the camera's stored settings");
    add_request_options(command, options->request);
    command.callback([others, options, mode, &result] {
        result = options->stored ? run_stored(mode, *options, others) : mode.run(*options);
    });
}

void add_join_outcome_options(CLI::App& command, mode_options& options) {
    command.add_flag("--address", options.request.address, "Wait for an IPv4 address, too");
    command.add_flag("--or-ap", options.request.or_ap,
                     "Start the stored access point when the network is not joined");
}

void add_access_point(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<mode_options>();
    auto& command = *wlanctl.add_subcommand("ap", "Start or stop the camera's access point");
    command.require_subcommand(1);
    auto& start = *command.add_subcommand("start", "Start the access point");
    add_network_options(start, options->access_point, "the camera's own network", "--ssid");
    finish(start, options, {"ap start", stored_access_point, start_access_point}, result);
    auto& stop = *command.add_subcommand("stop", "Stop the access point and its DHCP server");
    add_lock_option(stop, options->request);
    stop.callback([options, &result] { result = stop_access_point(options->request); });
}

void add_disconnect(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<request_options>();
    auto& command = *wlanctl.add_subcommand("disconnect", "Leave the network that was joined");
    add_lock_option(command, *options);
    command.callback([options, &result] { result = disconnect(*options); });
}

void add_store(CLI::App& wlanctl, answer& result) {
    CLI::App& store_command = *wlanctl.get_subcommand("store");
    const auto options = std::make_shared<mode_options>();
    auto& set = *store_command.add_subcommand("set", "Store the network to join");
    add_station_options(set, *options, "SSID");
    set.add_option("--key-index", options->key_index, "Number of the WEP key (MediaTek)")
        ->check(CLI::Range(1, 4, "1-4"));
    add_lock_option(set, options->request);
    set.callback([options, &result] { result = store(*options); });
    auto& nothing = *store_command.add_subcommand("forget", "Forget the network to join");
    add_lock_option(nothing, options->request);
    nothing.callback([options, &result] { result = forget(options->request); });
}

constexpr char outcome_footer[] =
    "With --json: outcome, done, and what wlanctl(8) names; else reason, certain, error, next.";

void add_join(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<mode_options>();
    auto& command = *wlanctl.add_subcommand("join", "Join a network as a station");
    add_station_options(command, *options, "SSID");
    command.add_option("--key-index", options->key_index, "Number of the WEP key (MediaTek)")
        ->check(CLI::Range(1, 4, "1-4"));
    command.add_flag("--store", options->store, "Store the network once it is joined");
    finish(command, options, {"join", stored_station, join}, result);
    add_join_outcome_options(command, *options);
    command.footer(outcome_footer);
}

void add_repeat(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<mode_options>();
    auto& command = *wlanctl.add_subcommand("repeat", "Join a network and offer an access point");
    add_network_options(command, options->access_point, "the camera's own network", "--ap-ssid",
                        "--ap-");
    add_station_options(command, *options, "--ssid");
    finish(command, options, {"repeat", stored_repeater, repeat}, result);
    add_join_outcome_options(command, *options);
    command.footer(outcome_footer);
}

} // namespace

void add_mode_commands(CLI::App& wlanctl, answer& result) {
    add_access_point(wlanctl, result);
    add_join(wlanctl, result);
    add_disconnect(wlanctl, result);
    add_repeat(wlanctl, result);
    add_store(wlanctl, result);
}
