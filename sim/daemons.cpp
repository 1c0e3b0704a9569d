#include "sim/daemons.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

#include <unistd.h>

#include "sim/interfaces.h"

namespace {

using texts = std::map<std::string, std::string>;

/// What follows each option, and under "" the word that follows none.
texts read_options(const words& command) {
    texts options;
    for (std::size_t i = 1; i < command.size(); ++i) {
        const std::string& word = command[i];
        if ((word == "-P" || word == "-c" || word == "-i") && i + 1 < command.size())
            options[word] = command[++i];
        else if (!word.empty())
            options[word[0] == '-' ? word : ""] = word;
    }
    return options;
}

/// Reads Key=Value lines, those of a network block among them.
/// @return what is wrong with the file; nothing when it can be used.
std::string read_settings(const std::string& path, texts& settings) {
    std::ifstream file(in_scratch(path));
    if (!file)
        return "Could not open configuration file '" + path + "'";
    bool in_network = false;
    for (std::string line; std::getline(file, line);) {
        line.erase(0, line.find_first_not_of(" \t"));
        const std::size_t equals = line.find('=');
        if (line == "network={" || line == "}")
            in_network = line != "}";
        else if (equals != std::string::npos)
            settings[line.substr(0, equals)] = line.substr(equals + 1);
        else if (!line.empty() && line[0] != '#')
            return (path + ": invalid line: ").append(line);
    }
    return in_network ? path + ": network block is not closed" : "";
}

int start(camera_state& state, const char* name, const std::string& pid_file,
          program_output& output) {
    for (pretend_daemon& place : state.daemons) {
        if (place.pid != 0)
            continue;
        place.pid = first_daemon_pid + state.daemons_started++;
        std::snprintf(place.name, sizeof place.name, "%s", name);
        std::snprintf(place.pid_file, sizeof place.pid_file, "%s", pid_file.c_str());
        std::ofstream(in_scratch(pid_file)) << place.pid << '\n';
        return 0;
    }
    return fail(output, std::string(name) + ": cannot fork");
}

/// hostapd and wpa_supplicant know the Realtek driver only.
int daemon_interface(const camera_state& state, const std::string& name) {
    return state.adapter == adapter_family::realtek ? find_interface(state, name) : no_interface;
}

/// @return the text between the quotes; empty when it has none.
std::string unquoted(const std::string& text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : "";
}

bool is_raw_key(const std::string& text) {
    return text.size() == 64 &&
           text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

bool is_passphrase(const std::string& text) {
    return text.size() >= 8 && text.size() <= 63;
}

int security_of(texts& network) {
    if (network["key_mgmt"] == "NONE")
        return AIR_OPEN;
    if (network["proto"].empty())
        return AIR_WPA | AIR_WPA2;
    return network["proto"] == "WPA" ? AIR_WPA : AIR_WPA2;
}

} // namespace

int hostapd(camera_state& state, const words& command, program_output& output) {
    texts options = read_options(command);
    texts settings;
    const std::string wrong = read_settings(options[""], settings);
    if (!wrong.empty())
        return fail(output, wrong);
    if (settings["ssid"].empty() || settings["ssid"].size() > AIR_SSID_MAX)
        return fail(output, "hostapd: invalid SSID '" + settings["ssid"] + "'");
    if (settings.count("wpa") != 0 && !is_passphrase(settings["wpa_passphrase"]))
        return fail(output, "hostapd: invalid WPA passphrase length (expected 8..63)");
    const int interface = daemon_interface(state, settings["interface"]);
    if (interface == no_interface)
        return fail(output, "Could not read interface " + settings["interface"] + " flags");
    if (options.count("-B") == 0)
        return 0; // in the foreground, and ended at once
    bring(state, interface, true);
    state.realtek.vifs[interface].channel = std::atoi(settings["channel"].c_str());
    return start(state, "hostapd", options["-P"], output);
}

int wpa_supplicant(camera_state& state, const words& command, program_output& output) {
    texts options = read_options(command);
    texts network;
    const std::string wrong = read_settings(options["-c"], network);
    if (!wrong.empty())
        return fail(output, wrong);
    const std::string ssid = unquoted(network["ssid"]);
    if (ssid.empty() || ssid.size() > AIR_SSID_MAX)
        return fail(output, "wpa_supplicant: invalid ssid " + network["ssid"]);
    const int security = security_of(network);
    const std::string key = is_raw_key(network["psk"]) ? network["psk"] : unquoted(network["psk"]);
    if (security != AIR_OPEN && !is_raw_key(key) && !is_passphrase(key))
        return fail(output, "wpa_supplicant: invalid psk");
    const int interface = daemon_interface(state, options["-i"]);
    if (interface == no_interface)
        return fail(output, "Could not read interface " + options["-i"] + " flags");
    if (options.count("-B") == 0)
        return 0;
    bring(state, interface, true);
    const air_wish wish = {
        ssid.c_str(), nullptr, key.c_str(), 0, security, AIR_PLAIN | AIR_TKIP | AIR_AES};
    state.realtek.vifs[interface].joined = air_join(&state.air, &wish);
    return start(state, "wpa_supplicant", options["-P"], output);
}

/// This camera's build reads /tmp/udhcpd.conf and keeps its pid beside it.
int udhcpd(camera_state& state, const words& /*command*/, program_output& output) {
    std::ifstream file(in_scratch("/tmp/udhcpd.conf"));
    texts settings;
    for (std::string line; std::getline(file, line);) {
        words parts = split(line + " - -");
        settings[parts[0]] = parts[1];
    }
    if (settings.count("start") == 0 || settings.count("end") == 0)
        return fail(output, "udhcpd: no address pool in /tmp/udhcpd.conf");
    if (find_interface(state, settings["interface"]) == no_interface)
        return fail(output, "udhcpd: SIOCGIFINDEX: No such device");
    return start(state, "udhcpd", "/tmp/udhcpd.pid", output);
}

int signal_daemon(camera_state& state, int pid, int signal) {
    for (pretend_daemon& daemon : state.daemons) {
        if (daemon.pid != pid)
            continue;
        const bool asked = signal == SIGTERM || signal == SIGINT;
        if (signal != SIGKILL && (!asked || lists(state.stubborn, daemon.name)))
            return 0;
        if (asked)
            unlink(in_scratch(daemon.pid_file).c_str());
        if (daemon.name == std::string("wpa_supplicant"))
            state.realtek.vifs[REALTEK_STATION].joined = 0;
        daemon = {};
        return 0;
    }
    return -ESRCH;
}
