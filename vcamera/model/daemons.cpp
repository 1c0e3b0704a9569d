// SPDX-License-Identifier: MIT
// The daemons of the camera.

#include "vcamera/model/daemons.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>

#include <unistd.h>

#include "vcamera/model/clock.h"
#include "vcamera/model/control_sockets.h"
#include "vcamera/model/hostapd_settings.h"
#include "vcamera/model/interfaces.h"
#include "vcamera/model/udhcpd_settings.h"
#include "vcamera/model/wpa_supplicant_settings.h"

namespace {

// Microseconds. Debian's daemons take this long on an idle machine of 2020.
constexpr std::int64_t until_pid_file = 5000;
constexpr std::int64_t until_end = 100000;

/// wpa_supplicant's status for every failure.
constexpr int supplicant_failed = 255;

using texts = std::map<std::string, std::string>;

/// What follows each option, and under "" the word that follows none.
texts read_options(const words& command) {
    texts options;
    for (std::size_t i = 1; i < command.size(); ++i) {
        const std::string& word = command[i];
        if ((word == "-P" || word == "-c" || word == "-i") && i + 1 < command.size()) {
            options[word] = command[++i];
        } else if (!word.empty()) {
            options[word[0] == '-' ? word : ""] = word;
        }
    }
    return options;
}

/// @return whether there is such a file.
bool read_file(const std::string& path, std::string& text) {
    std::ifstream file(in_scratch(path));
    text.assign(std::istreambuf_iterator<char>(file), {});
    return !path.empty() && file.is_open();
}

void print_lines(program_output& output, const std::vector<std::string>& lines) {
    for (const std::string& line : lines)
        output.err += line + "\n";
}

// Processes

/// hostapd and wpa_supplicant know the Realtek driver only.
int daemon_interface(const camera_state& state, const std::string& name) {
    return state.adapter == adapter_family::realtek ? find_interface(state, name) : no_interface;
}

bool runs_on(const camera_state& state, const char* name, int interface) {
    for (const fake_daemon& daemon : state.daemons) {
        if (daemon.pid != 0 && daemon.name == std::string(name) && daemon.interface == interface)
            return true;
    }
    return false;
}

/// @return the new process; null when there are too many.
fake_daemon* start(camera_state& state, const char* name, int interface,
                   const std::string& pid_file, program_output& output) {
    for (fake_daemon& place : state.daemons) {
        if (place.pid != 0)
            continue;
        place = {};
        place.pid = first_daemon_pid + state.daemons_started++;
        place.interface = interface;
        place.raised = up_flag(state, interface) == 0;
        place.pid_file_at = camera_time(state) + until_pid_file;
        std::snprintf(place.name, sizeof place.name, "%s", name);
        std::snprintf(place.pid_file, sizeof place.pid_file, "%s", pid_file.c_str());
        return &place;
    }
    fail(output, std::string(name) + ": cannot fork");
    return nullptr;
}

/// The process is gone, and with it what it kept up.
void end(camera_state& state, fake_daemon& daemon) {
    if (daemon.name == std::string("wpa_supplicant"))
        supplicant_stop(state);
    if (daemon.name == std::string("hostapd"))
        dismiss_visitors(state);
    daemon = {};
}

/// hostapd and wpa_supplicant leave their interface as they found it, unless they are killed.
void end_orderly(camera_state& state, fake_daemon& daemon) {
    if (daemon.name == std::string("wpa_supplicant")) {
        supplicant_disconnect(state);
    } else {
        tell_clients(state, daemon.name, daemon.interface, "AP-DISABLED ");
    }
    close_control(state, daemon);
    unlink(in_scratch(daemon.pid_file).c_str());
    if (daemon.raised && daemon.name != std::string("udhcpd"))
        bring(state, daemon.interface, false);
    end(state, daemon);
}

// What the programs make of their files

/// A stock hostapd behind a script that changes the driver's line of the file.
std::string with_stock_driver(std::string text) {
    const std::string line = "driver=rtl871xdrv\n";
    const std::size_t place = text.find(line);
    return place == std::string::npos ? text : text.replace(place, line.size(), "driver=nl80211\n");
}

int security_of(texts& network) {
    if (is_among(network["key_mgmt"], "NONE"))
        return AIR_OPEN;
    const std::string proto = network.count("proto") != 0 ? network["proto"] : "WPA RSN";
    const bool rsn = is_among(proto, "RSN") || is_among(proto, "WPA2");
    return (is_among(proto, "WPA") ? AIR_WPA : 0) | (rsn ? AIR_WPA2 : 0);
}

void keep_networks(supplicant& supplicant, const supplicant_settings& settings) {
    supplicant = {};
    for (texts network : settings.networks) {
        if (supplicant.networks == static_cast<int>(std::size(supplicant.wanted)))
            return;
        wanted_network& kept = supplicant.wanted[supplicant.networks++];
        const std::string& psk = network["psk"];
        const std::string key = psk[0] == '"' ? psk.substr(1, psk.rfind('"') - 1) : psk;
        const std::string ssid = read_text_value(network["ssid"]).value_or("");
        std::snprintf(kept.ssid, sizeof kept.ssid, "%s", ssid.c_str());
        std::snprintf(kept.key, sizeof kept.key, "%s", key.c_str());
        kept.security = static_cast<std::uint8_t>(security_of(network));
        kept.left_out = network["disabled"] == "1" ? 1 : 0;
    }
}

/// The best cipher of a list, as hostapd names it.
void keep_cipher(char (&kept)[16], const std::string& list, bool weakest) {
    const bool tkip = is_among(list, "TKIP");
    const bool ccmp = is_among(list, "CCMP");
    const char* both = weakest ? "TKIP" : "CCMP TKIP";
    std::snprintf(kept, sizeof kept, "%s", tkip && ccmp ? both : tkip ? "TKIP" : "CCMP");
}

void keep_network(hosted_network& hosted, texts values) {
    hosted = {};
    const std::string& ssid = values["ssid"];
    hosted.ssid_length = static_cast<std::uint8_t>(ssid.copy(hosted.ssid, AIR_SSID_MAX));
    hosted.channel = std::atoi(values["channel"].c_str());
    hosted.wpa = std::atoi(values["wpa"].c_str());
    const std::string wpa = values.count("wpa_pairwise") != 0 ? values["wpa_pairwise"] : "TKIP";
    const std::string rsn = values.count("rsn_pairwise") != 0 ? values["rsn_pairwise"] : wpa;
    keep_cipher(hosted.wpa_pairwise, wpa, false);
    keep_cipher(hosted.rsn_pairwise, rsn, false);
    const std::string used =
        ((hosted.wpa & 1) != 0 ? wpa + " " : "") + ((hosted.wpa & 2) != 0 ? rsn : "");
    keep_cipher(hosted.group, used, true);
}

} // namespace

int hostapd(camera_state& state, const words& command, program_output& output) {
    texts options = read_options(command);
    const std::string path = options[""];
    const auto give_up = [&] {
        print_lines(output, {"Failed to set up interface with " + path});
        return fail(output, "Failed to initialize interface");
    };
    std::string text;
    if (!read_file(path, text)) {
        print_lines(output, {"Could not open configuration file '" + path + "' for reading."});
        return give_up();
    }
    const hostapd_build build = state.hostapd;
    hostapd_settings settings = read_hostapd_settings(
        build == hostapd_build::wrapped ? with_stock_driver(text) : text, build);
    print_lines(output, settings.report.messages);
    if (settings.report.errors != 0) {
        print_lines(output, {std::to_string(settings.report.errors) +
                             " errors found in configuration file '" + path + "'"});
        return give_up();
    }
    const std::string name = settings.values["interface"];
    const int interface = daemon_interface(state, name);
    std::vector<std::string> refused;
    if (interface == no_interface) {
        refused = {"Could not read interface " + name + " flags: No such device",
                   "nl80211 driver initialization failed."};
    } else if (runs_on(state, "hostapd", interface)) {
        refused = {"nl80211: kernel reports: Match already configured",
                   "nl80211: Could not configure driver mode",
                   "nl80211 driver initialization failed."};
    } else {
        refused = channel_refusal(settings, build);
    }
    if (!refused.empty()) {
        print_lines(output, refused);
        return fail(output, name + ": Unable to setup interface.");
    }
    if (options.count("-B") == 0)
        return 0; // in the foreground, and ended at once
    fake_daemon* daemon = start(state, "hostapd", interface, options["-P"], output);
    if (daemon == nullptr)
        return 1;
    bring(state, interface, true);
    keep_network(state.hosted, settings.values);
    state.realtek.vifs[interface].channel = state.hosted.channel;
    open_control(state, *daemon, settings.values["ctrl_interface"]);
    expect_visitors(state);
    return 0;
}

int wpa_supplicant(camera_state& state, const words& command, program_output& output) {
    texts options = read_options(command);
    const std::string path = options["-c"];
    output.out += "Successfully initialized wpa_supplicant\n";
    std::string text;
    if (!read_file(path, text)) {
        print_lines(output, {"Failed to open config file '" + path +
                             "', error: No such file or directory"});
        return fail(output, "Failed to read or parse configuration '" + path + "'.",
                    supplicant_failed);
    }
    supplicant_settings settings = read_supplicant_settings(text);
    print_lines(output, settings.report.messages);
    if (settings.report.errors != 0) {
        return fail(output, "Failed to read or parse configuration '" + path + "'.",
                    supplicant_failed);
    }
    const int interface = daemon_interface(state, options["-i"]);
    if (interface == no_interface) {
        print_lines(output,
                    {"Could not read interface " + options["-i"] + " flags: No such device"});
        return fail(output, options["-i"] + ": Failed to initialize driver interface",
                    supplicant_failed);
    }
    if (runs_on(state, "wpa_supplicant", interface)) {
        return fail(output, "ctrl_iface exists and seems to be in use - cannot override it",
                    supplicant_failed);
    }
    if (options.count("-B") == 0)
        return 0;
    fake_daemon* daemon = start(state, "wpa_supplicant", interface, options["-P"], output);
    if (daemon == nullptr)
        return 1;
    bring(state, interface, true);
    keep_networks(state.supplicant, settings);
    open_control(state, *daemon, settings.values["ctrl_interface"]);
    supplicant_start(state);
    return 0;
}

/// This camera's build reads /tmp/udhcpd.conf and keeps its pid beside it. In the background it has
/// returned before it reads: whatever then ends it is told to nobody.
int udhcpd(camera_state& state, const words& command, program_output& output) {
    const std::string path = "/tmp/udhcpd.conf";
    const bool foreground = read_options(command).count("-f") != 0;
    std::string text;
    udhcpd_settings settings;
    if (read_file(path, text)) {
        settings = read_udhcpd_settings(text, path);
    } else {
        settings.ends = true;
        settings.messages = {path + ": No such file or directory"};
    }
    const std::string name = settings.values["interface"];
    const int interface = find_interface(state, name);
    if (!settings.ends && interface == no_interface) {
        settings.ends = true;
        settings.messages.push_back("is interface " + name + " up and configured?: No such device");
    }
    if (foreground) {
        for (const std::string& message : settings.messages)
            output.err += "udhcpd: " + message + "\n";
        return settings.ends ? 1 : 0;
    }
    if (settings.ends)
        return 0;
    return start(state, "udhcpd", interface, "/tmp/udhcpd.pid", output) != nullptr ? 0 : 1;
}

int signal_daemon(camera_state& state, int pid, int signal) {
    for (fake_daemon& daemon : state.daemons) {
        if (daemon.pid != pid)
            continue;
        if (signal == SIGKILL) {
            abandon_control(state, daemon);
            end(state, daemon);
        } else if ((signal == SIGTERM || signal == SIGINT) && !lists(state.stubborn, daemon.name)) {
            terminate_daemon(state, daemon);
        }
        return 0;
    }
    return -ESRCH;
}

void terminate_daemon(camera_state& state, fake_daemon& daemon) {
    if (daemon.gone_at == 0)
        daemon.gone_at = camera_time(state) + until_end;
}

namespace {

/// What of the Wi-Fi is due at this time.
void advance_radio(camera_state& state, std::int64_t now) {
    if (air_advance(&state.air, now) != 0) {
        mtk_radio_leave_gone(&state.mtk, &state.air);
        const int joined = state.realtek.vifs[REALTEK_STATION].joined;
        if (joined != 0 && state.air.points[joined - 1].gone != 0)
            supplicant_lose(state, now);
    }
    supplicant_advance(state, now);
    advance_visitors(state, now);
    advance_addresses(state, now);
}

void advance_to(camera_state& state, std::int64_t now) {
    for (fake_daemon& daemon : state.daemons) {
        if (daemon.pid_file_at != 0 && now >= daemon.pid_file_at) {
            std::ofstream(in_scratch(daemon.pid_file)) << daemon.pid << '\n';
            daemon.pid_file_at = 0;
        }
        if (daemon.gone_at != 0 && now >= daemon.gone_at)
            end_orderly(state, daemon);
    }
    advance_radio(state, now);
}

/// Of two times, of which 0 is never.
std::int64_t earlier(std::int64_t one, std::int64_t other) {
    return one == 0 || other == 0 ? std::max(one, other) : std::min(one, other);
}

/// What a very long wait leaves to do is caught up with in several calls.
constexpr int most_steps = 10000;

} // namespace

void advance_daemons(camera_state& state) {
    const std::int64_t now = camera_time(state);
    for (int step = 0; step < most_steps; ++step) {
        const std::int64_t due = daemons_due(state);
        if (due == 0 || due > now)
            break;
        advance_to(state, due);
    }
    advance_addresses(state, now);
}

std::int64_t daemons_due(const camera_state& state) {
    std::int64_t due = earlier(supplicant_due(state.supplicant), visitors_due(state));
    due = earlier(due, air_due(&state.air));
    for (const fake_daemon& daemon : state.daemons)
        due = earlier(due, earlier(daemon.pid_file_at, daemon.gone_at));
    return due;
}
