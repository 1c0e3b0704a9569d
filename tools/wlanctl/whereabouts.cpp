// SPDX-License-Identifier: MIT
// Where the camera is on the air.

#include "whereabouts.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>

#include "control_socket.h"
#include "daemons.h"
#include "link.h"

namespace {

answer or_nothing(const std::string& text) {
    return text.empty() ? answer() : answer(text);
}

answer or_nothing(int number) {
    return number > 0 ? answer(number) : answer();
}

/// The words of wpa_supplicant as a survey has them: "WPA2-PSK AES".
std::string security_in(const std::string& status) {
    const std::string management = value_in(status, "key_mgmt");
    const std::string cipher = value_in(status, "pairwise_cipher");
    if (management.empty())
        return "";
    if (management == "NONE")
        return cipher.compare(0, 3, "WEP") == 0 ? "WEP" : "OPEN";
    return management + (cipher.empty() ? "" : cipher == "CCMP" ? " AES" : " " + cipher);
}

/// "WPA2-PSK AES", as wpa_supplicant tells it; the kernel does not.
answer security_of_station(bool mediatek) {
    if (mediatek || !is_running(supplicant_daemon))
        return nullptr;
    control_socket control(supplicant_control);
    if (!control.open())
        return nullptr;
    return or_nothing(security_in(control.reply_to("STATUS")));
}

/// What hostapd was told, for when it does not tell itself.
std::string configured(const std::string& name) {
    std::ifstream file("/tmp/hostapd.conf");
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, name.size() + 1, name + "=") == 0)
            return line.substr(name.size() + 1);
    }
    return "";
}

/// hostapd gives its stations one by one, each for the one before.
answer stations_of(control_socket& control, const std::string& status) {
    constexpr std::size_t most = 64; // a camera's adapter takes fewer
    const std::string count = value_in(status, "num_sta[0]");
    if (count.empty())
        return nullptr;
    answer addresses = answer::list();
    std::string asked = "STA-FIRST";
    while (addresses.fields().size() < most) {
        const std::string reply = control.reply_to(asked);
        const std::string address = reply.substr(0, reply.find('\n'));
        if (!is_address(address))
            break;
        addresses.push_back(address);
        asked = "STA-NEXT " + address;
    }
    return {{"count", std::max(std::atoi(count.c_str()), 0)}, {"addresses", addresses}};
}

answer realtek_access_point() {
    constexpr char interface[] = "wlan1";
    if (!is_running(hostapd_daemon))
        return nullptr;
    control_socket control(hostapd_control);
    const std::string status = control.open() ? control.reply_to("STATUS") : "";
    const std::string state = value_in(status, "state");
    if (state.empty()) { // no answer, or none that can be believed
        const int channel = std::atoi(configured("channel").c_str());
        return {{"interface", interface},
                {"ssid", or_nothing(configured("ssid"))},
                {"channel", or_nothing(channel)},
                {"stations", nullptr}};
    }
    if (state == "DISABLED")
        return nullptr;
    return {{"interface", interface},
            {"ssid", or_nothing(plain_name(value_in(status, "ssid[0]")))},
            {"channel", or_nothing(std::atoi(value_in(status, "channel").c_str()))},
            {"stations", stations_of(control, status)}};
}

answer mediatek_access_point(const wifi_interface& interface) {
    return {{"interface", interface.name},
            {"ssid", or_nothing(ask_ssid(interface.name))},
            {"channel", or_nothing(ask_channel(interface.name))},
            {"stations", nullptr}};
}

} // namespace

answer station_of(const adapter& found) {
    for (const wifi_interface& interface : found.interfaces) {
        if (!interface.station || interface.state != "up")
            continue;
        const link_state link = ask_link(interface.name);
        if (!link.associated)
            continue;
        answer station = {{"interface", interface.name},
                          {"ssid", or_nothing(link.ssid)},
                          {"bssid", or_nothing(link.bssid)},
                          {"security", security_of_station(found.mediatek)}};
        const bool in_percent = !link.signal_percent.is_null();
        station.set(in_percent ? "signal_percent" : "signal_dbm",
                    in_percent ? link.signal_percent : link.signal_dbm);
        station.set("channel", or_nothing(link.channel));
        station.set("address", or_nothing(link.address));
        return station;
    }
    return nullptr;
}

answer access_point_of(const adapter& found) {
    for (const wifi_interface& interface : found.interfaces) {
        if (!interface.station && interface.state == "up")
            return found.mediatek ? mediatek_access_point(interface) : realtek_access_point();
    }
    return nullptr;
}

int signal_share(const answer& station) {
    const answer& percent = station.at("signal_percent");
    const answer& dbm = station.at("signal_dbm");
    if (!percent.is_null())
        return percent.number();
    constexpr int least_dbm = -100;
    return dbm.is_null() ? -1 : std::clamp(2 * (dbm.number() - least_dbm), 0, 100);
}

std::string signal_text(const answer& station) {
    const answer& percent = station.at("signal_percent");
    const answer& dbm = station.at("signal_dbm");
    return !percent.is_null() ? percent.cell() + " %" : !dbm.is_null() ? dbm.cell() + " dBm" : "-";
}
