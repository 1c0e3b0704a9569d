// SPDX-License-Identifier: MIT
// The commands of hostapd's control socket, answered as by hostapd 2.10.

#include <cstdio>

#include "vcamera/model/addresses.h"
#include "vcamera/model/control_commands.h"
#include "vcamera/model/texts.h"
#include "vcamera/model/visitors.h"

namespace {

std::string line(const std::string& key, const std::string& value) {
    return key + "=" + value + "\n";
}

int mhz_of(int channel) {
    return channel == 14 ? 2484 : 2407 + 5 * channel;
}

std::string status(const camera_state& state, const fake_daemon& daemon) {
    const hosted_network& hosted = state.hosted;
    std::string text = line("state", "ENABLED") + line("phy", "phy0") +
                       line("freq", std::to_string(mhz_of(hosted.channel)));
    for (const char* none :
         {"num_sta_non_erp", "num_sta_no_short_slot_time", "num_sta_no_short_preamble", "olbc",
          "num_sta_ht_no_gf", "num_sta_no_ht", "num_sta_ht_20_mhz", "num_sta_ht40_intolerant",
          "olbc_ht"})
        text += line(none, "0");
    return text + line("ht_op_mode", "0x0") + line("cac_time_seconds", "0") +
           line("cac_time_left_seconds", "N/A") + line("channel", std::to_string(hosted.channel)) +
           line("edmg_enable", "0") + line("edmg_channel", "0") + line("secondary_channel", "0") +
           line("ieee80211n", "1") + line("ieee80211ac", "0") + line("ieee80211ax", "0") +
           line("beacon_int", "100") + line("dtim_period", "2") +
           line("supported_rates", "02 04 0b 16 0c 12 18 24 30 48 60 6c") +
           line("max_txpower", "20") + line("bss[0]", state.interfaces[daemon.interface]) +
           line("bssid[0]", hardware_address_text(daemon.interface)) +
           line("ssid[0]", printable({hosted.ssid, hosted.ssid_length})) +
           line("num_sta[0]", std::to_string(count_visitors(state)));
}

std::string get_config(const camera_state& state, const fake_daemon& daemon) {
    const hosted_network& hosted = state.hosted;
    std::string text = line("bssid", hardware_address_text(daemon.interface)) +
                       line("ssid", printable({hosted.ssid, hosted.ssid_length})) +
                       line("wps_state", "disabled");
    if (hosted.wpa == 0)
        return text;
    text += line("wpa", std::to_string(hosted.wpa)) + line("key_mgmt", "WPA-PSK") +
            line("group_cipher", hosted.group);
    if ((hosted.wpa & 2) != 0)
        text += line("rsn_pairwise_cipher", hosted.rsn_pairwise);
    if ((hosted.wpa & 1) != 0)
        text += line("wpa_pairwise_cipher", hosted.wpa_pairwise);
    return text;
}

std::string station(const camera_state& state, const visitor* visitor) {
    if (visitor == nullptr)
        return "";
    return address_text(visitor->address) + "\nflags=[AUTH][ASSOC][AUTHORIZED][SHORT_PREAMBLE]\n" +
           line("aid", std::to_string(visitor - state.visitors + 1)) + line("capability", "0x431") +
           line("listen_interval", "5") +
           line("supported_rates", "02 04 0b 16 0c 12 18 24 30 48 60 6c") +
           line("timeout_next", "NULLFUNC POLL") + line("rx_packets", "11") +
           line("tx_packets", "4") + line("rx_bytes", "1218") + line("tx_bytes", "409") +
           line("inactive_msec", "0") + line("signal", std::to_string(visitor->signal)) +
           line("rx_rate_info", "540") + line("tx_rate_info", "540") +
           line("connected_time", std::to_string(seconds_of_visit(state, *visitor)));
}

} // namespace

command_answer hostapd_command(camera_state& state, fake_daemon& daemon,
                               const std::string& command) {
    const auto named = [&](std::size_t length) {
        return find_visitor(state, command.substr(length));
    };
    if (command == "STATUS" || command == "STATUS-DRIVER")
        return status(state, daemon);
    if (command == "GET_CONFIG")
        return get_config(state, daemon);
    if (command == "STA-FIRST")
        return station(state, next_visitor(state, nullptr));
    if (command.rfind("STA-NEXT ", 0) == 0) {
        const visitor* previous = named(9);
        return previous == nullptr ? "FAIL\n" : station(state, next_visitor(state, previous));
    }
    if (command.rfind("STA ", 0) == 0) {
        const visitor* visitor = named(4);
        return visitor == nullptr ? "FAIL\n" : station(state, visitor);
    }
    return std::nullopt;
}
