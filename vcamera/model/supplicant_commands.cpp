// SPDX-License-Identifier: MIT
// The commands of wpa_supplicant's control socket, answered as by wpa_supplicant 2.10.

#include <cstdio>
#include <cstdlib>

#include "vcamera/model/addresses.h"
#include "vcamera/model/clock.h"
#include "vcamera/model/control_commands.h"
#include "vcamera/model/interfaces.h"
#include "vcamera/model/scan_events.h"
#include "vcamera/model/texts.h"

namespace {

constexpr std::size_t longest_answer = 4096;
constexpr const char* done = "OK\n";
constexpr const char* failed = "FAIL\n";

std::string line(const char* key, const std::string& value) {
    return std::string(key) + "=" + value + "\n";
}

bool is_trying(const supplicant& supplicant) {
    return supplicant.step == supplicant_step::associating ||
           supplicant.step == supplicant_step::backing_off ||
           supplicant.step == supplicant_step::handshake ||
           supplicant.step == supplicant_step::completed;
}

std::string status(camera_state& state) {
    std::string text;
    const access_point* point = joined(state, REALTEK_STATION);
    if (point != nullptr) {
        const bool open = point->security == AIR_OPEN;
        text = line("bssid", address_text(point->bssid)) +
               line("freq", std::to_string(point->mhz)) + line("ssid", ssid_text(*point)) +
               line("id", std::to_string(state.supplicant.network)) + line("mode", "station") +
               line("pairwise_cipher", open ? "NONE" : pairwise_name(*point)) +
               line("group_cipher", open ? "NONE" : group_name(*point)) +
               line("key_mgmt", key_management_name(*point));
    }
    text += line("wpa_state", supplicant_state_name(state));
    if (const auto address = interface_address(state, REALTEK_STATION))
        text += line("ip_address", *address);
    return text + line("address", hardware_address_text(REALTEK_STATION));
}

std::string list_networks(const camera_state& state, int after) {
    const supplicant& supplicant = state.supplicant;
    std::string text = "network id / ssid / bssid / flags\n";
    for (int i = after + 1; i < supplicant.networks; ++i) {
        const wanted_network& network = supplicant.wanted[i];
        text += std::to_string(i) + "\t" + printable(network.ssid) + "\tany\t";
        if (is_trying(supplicant) && supplicant.network == i)
            text += "[CURRENT]";
        if (network.left_out != 0)
            text += "[DISABLED]";
        if (network.disabled_until > camera_time(state))
            text += "[TEMP-DISABLED]";
        text += "\n";
    }
    return text;
}

/// What a beacon tells: not the name of a network that hides it.
std::string beacon_name(const access_point& point) {
    const std::string name = ssid_bytes(point);
    return printable(point.hidden != 0 ? std::string(name.size(), '\0') : name);
}

std::string scan_results(const camera_state& state) {
    std::string text = "bssid / frequency / signal level / flags / ssid\n";
    for (int i = 0; i < state.air.count && state.supplicant.scanned != 0; ++i) {
        const access_point& point = state.air.points[i];
        if (point.gone != 0)
            continue;
        const std::string row = address_text(point.bssid) + "\t" + std::to_string(point.mhz) +
                                "\t" + std::to_string(point.level) + "\t" + security_flags(point) +
                                "\t" + beacon_name(point) + "\n";
        if (text.size() + row.size() >= longest_answer)
            break;
        text += row;
    }
    return text;
}

std::string in_hex(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
        text += digits;
    }
    return text;
}

/// @param which an entry's number or its address.
std::string bss(const camera_state& state, const std::string& which) {
    int number = 0;
    for (int i = 0; i < state.air.count && state.supplicant.scanned != 0; ++i) {
        const access_point& point = state.air.points[i];
        if (point.gone != 0)
            continue;
        const int id = number++;
        if (which != std::to_string(id) && which != address_text(point.bssid) &&
            !(which == "FIRST" && id == 0))
            continue;
        char capabilities[8];
        std::snprintf(capabilities, sizeof capabilities, "0x%04x",
                      0x0401 | (point.security == AIR_OPEN ? 0 : 0x10));
        return line("id", std::to_string(id)) + line("bssid", address_text(point.bssid)) +
               line("freq", std::to_string(point.mhz)) + line("beacon_int", "100") +
               line("capabilities", capabilities) + line("qual", "0") +
               line("noise", std::to_string(MTK_NOISE)) +
               line("level", std::to_string(point.level)) +
               line("tsf", std::to_string(camera_time(state))) + line("age", "0") +
               line("ie", in_hex(beacon_elements(point, state.realtek.vendor_bytes))) +
               line("flags", security_flags(point)) + line("ssid", beacon_name(point)) +
               line("snr", std::to_string(point.level - MTK_NOISE));
    }
    return "";
}

std::string signal_poll(const camera_state& state) {
    const access_point* point = joined(state, REALTEK_STATION);
    if (point == nullptr)
        return failed;
    const std::string level = std::to_string(point->level);
    return line("RSSI", level) + line("LINKSPEED", "54") +
           line("NOISE", std::to_string(MTK_NOISE)) +
           line("FREQUENCY", std::to_string(point->mhz)) + line("WIDTH", "20 MHz (no HT)") +
           line("CENTER_FRQ1", std::to_string(point->mhz)) + line("AVG_RSSI", level) +
           line("AVG_BEACON_RSSI", level);
}

std::string argument(const std::string& command, std::size_t length) {
    return command.substr(length);
}

bool begins(const std::string& command, const char* start) {
    return command.rfind(start, 0) == 0;
}

} // namespace

command_answer wpa_supplicant_command(camera_state& state, fake_daemon& daemon,
                                      const std::string& command) {
    if (command == "STATUS" || command == "STATUS-VERBOSE")
        return status(state);
    if (command == "LIST_NETWORKS")
        return list_networks(state, -1);
    if (begins(command, "LIST_NETWORKS LAST_ID="))
        return list_networks(state, std::atoi(command.c_str() + 22));
    if (command == "SCAN_RESULTS")
        return scan_results(state);
    if (begins(command, "BSS "))
        return bss(state, argument(command, 4));
    if (command == "SIGNAL_POLL")
        return signal_poll(state);
    if (command == "SCAN" || begins(command, "SCAN "))
        return supplicant_scan(state) ? done : "FAIL-BUSY\n";
    if (command == "DISCONNECT") {
        supplicant_disconnect(state);
        return done;
    }
    if (command == "RECONNECT" || command == "REASSOCIATE" || command == "REATTACH") {
        supplicant_reconnect(state, command != "RECONNECT");
        return done;
    }
    if (command == "INTERFACES")
        return std::string(state.interfaces[daemon.interface]) + "\n";
    if (command == "GET version")
        return "2.10";
    return std::nullopt;
}
