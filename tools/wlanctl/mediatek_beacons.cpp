// SPDX-License-Identifier: MIT
// Access points as a MediaTek driver's survey table tells them.

#include "mediatek_beacons.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <sstream>

#include <sys/ioctl.h>
#include <sys/socket.h>

#include "base/unique_fd.h"
#include "field.h"
#include "libwlan/link_status.h"
#include "libwlan/wlan.h"
#include "link.h"

namespace {

struct column {
    std::size_t position;
    std::size_t length;
};

/// Where things stand in a line. In the second layout one column has the whole security, and the
/// signal is in percent.
struct layout {
    column channel, signal, name, bssid, cipher, authentication, type;
};

constexpr layout layouts[] = {
    {{0, 8}, {8, 8}, {16, 36}, {52, 20}, {72, 12}, {84, 20}, {104, 12}},
    {{0, 4}, {82, 9}, {4, 35}, {39, 20}, {59, 23}, {0, 0}, {106, 2}},
};

/// The driver's words as a survey has them. The first that a text contains counts.
constexpr struct word {
    const char* drivers;
    const char* text;
} authentications[] =
    {
        {"WPA1PSKWPA2PSK", "WPA-PSK/WPA2-PSK"},
        {"WPAPSKWPA2PSK", "WPA-PSK/WPA2-PSK"},
        {"WPA2PSK", "WPA2-PSK"},
        {"WPA1PSK", "WPA-PSK"},
        {"WPAPSK", "WPA-PSK"},
        {"WPA1WPA2", "WPA-EAP/WPA2-EAP"},
        {"WPA2", "WPA2-EAP"},
        {"WPA", "WPA-EAP"},
},
  ciphers[] = {
      {"TKIPAES", "TKIP/AES"},
      {"AES", "AES"},
      {"TKIP", "TKIP"},
      {"WEP", "WEP"},
};

template <std::size_t size>
std::string find(const word (&words)[size], const std::string& text) {
    const auto* found = std::find_if(std::begin(words), std::end(words), [&](const word& word) {
        return text.find(word.drivers) != std::string::npos;
    });
    return found == std::end(words) ? "" : found->text;
}

std::string trimmed(const std::string& text) {
    const std::size_t start = text.find_first_not_of(" \t");
    const std::size_t end = text.find_last_not_of(" \t");
    return start == std::string::npos ? "" : text.substr(start, end - start + 1);
}

std::string cell(const std::string& line, const column& column) {
    return column.position < line.size() ? trimmed(line.substr(column.position, column.length))
                                         : "";
}

std::string security_of(const std::string& words) {
    const std::string authentication = find(authentications, words);
    const std::string cipher = find(ciphers, words);
    if (authentication.empty())
        return cipher.empty() ? "OPEN" : cipher;
    return authentication + (cipher.empty() ? "" : " " + cipher);
}

/// What stands between the quotes; a hidden one has nothing there.
std::string name_of(const std::string& quoted) {
    const std::size_t end = quoted.rfind('"');
    return end == std::string::npos || end == 0 ? "" : quoted.substr(1, end - 1);
}

int mhz_of(int channel) {
    constexpr int last_2ghz = 14;
    constexpr int mhz_14 = 2484;
    if (channel == last_2ghz)
        return mhz_14;
    return (channel < last_2ghz ? 2407 : 5000) + 5 * channel;
}

/// @return whether the line makes sense.
bool read_line(const std::string& line, const layout& layout, beacon& heard) {
    constexpr int most_channels = 196;
    const int signal = std::atoi(cell(line, layout.signal).c_str());
    const std::string bssid = cell(line, layout.bssid);
    heard.channel = std::atoi(cell(line, layout.channel).c_str());
    if (heard.channel < 1 || heard.channel > most_channels || !is_address(bssid) ||
        cell(line, layout.type).compare(0, 2, "In") != 0)
        return false;
    heard.mhz = mhz_of(heard.channel);
    fill(heard.bssid, bssid);
    fill(heard.name, name_of(cell(line, layout.name)));
    fill(heard.security,
         security_of(cell(line, layout.authentication) + "/" + cell(line, layout.cipher)));
    (signal < 0 ? heard.dbm : heard.percent) = signal < 0 ? signal : std::min(signal, 100);
    return true;
}

constexpr char access_point[] = "ra0"; // which the library surveys on

/// @return the driver's table; none when it refuses.
std::optional<std::string> driver_table() {
    constexpr unsigned long survey_request = SIOCIWFIRSTPRIV + 0x0D;
    constexpr std::size_t most = 8192; // that the driver gives
    const libwlan::unique_fd socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    std::string table(most + 1, '\0');
    iwreq request{};
    std::snprintf(request.ifr_name, sizeof request.ifr_name, "%s", access_point);
    request.u.data.pointer = table.data();
    request.u.data.length = most;
    if (ioctl(socket.get(), survey_request, &request) < 0)
        return std::nullopt;
    return table.c_str(); // up to its end
}

} // namespace

std::vector<beacon> read_survey_table(const std::string& table) {
    std::vector<beacon> list;
    std::istringstream lines(table);
    std::string line;
    while (line.empty() && std::getline(lines, line))
        continue; // to the header
    const layout& layout = layouts[line.compare(0, 8, "Ch  SSID") == 0 ? 1 : 0];
    while (std::getline(lines, line)) {
        beacon heard;
        if (read_line(line, layout, heard))
            list.push_back(heard);
    }
    return list;
}

int hear_mediatek(std::vector<beacon>& list, bool trigger) {
    wlan radio;
    if (radio.init() != 0)
        return -1;
    // The library raises the interface for its survey only; the table is asked for after it.
    char interface[sizeof access_point];
    std::snprintf(interface, sizeof interface, "%s", access_point);
    char up[] = "up";
    char down[] = "down";
    const bool raised = does_if_exist(interface) == 0;
    if (raised)
        radio.ifconfig(interface, up);
    std::vector<sites> listed;
    radio.do_site_survey(listed, trigger);
    const std::optional<std::string> table = driver_table();
    if (raised)
        radio.ifconfig(interface, down);
    radio.release();
    list = read_survey_table(table.value_or(""));
    return table ? 0 : -1;
}
