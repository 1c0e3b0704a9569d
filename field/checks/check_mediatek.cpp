// The MediaTek family on a real kernel: what its driver received is what was asked, byte for byte.

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

#include "libwlan/libwlan.h"
#include "report.h"
#include "shell.h"
#include "sim/air.h"

namespace {

char ssid[] = "Net";
char bssid[] = "02:00:00:00:00:01";
char key[] = "passphrase";

const std::string folder = "/sys/kernel/debug/mtk_radio/";

/// The driver takes a file's content in one piece.
void tell(const std::string& name, const std::string& text) {
    const int file = open((folder + name).c_str(), O_WRONLY);
    const ssize_t written = write(file, text.data(), text.size());
    if (written != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("cannot tell the driver its " + name + ": " +
                                 std::strerror(errno));
    close(file);
}

std::string received() {
    std::ifstream file(folder + "received");
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string set(const std::string& interface, const std::string& text) {
    return interface + " set " + std::to_string(text.size()) + " " + text + "\n";
}

std::string access_point_commands() {
    std::string commands;
    for (const char* text : {"CountryRegion=5", "RadioOn=1", "AuthMode=WPA2PSK", "EncrypType=AES",
                             "SSID=Net", "WPAPSK=passphrase", "SSID=Net"})
        commands += set("ra0", text);
    return commands;
}

std::string station(const std::string& interface, const std::string& region,
                    const std::string& channel) {
    std::string commands;
    for (const std::string& text :
         {std::string("ApCliEnable=0"), region, std::string("ApCliAuthMode=WPA2PSK"),
          std::string("ApCliEncrypType=TKIPAES"), std::string("ApCliSsid=Net"),
          std::string("WpaMixPairCipher=WPA_TKIP_WPA2_AES"), std::string("ApCliWPAPSK=passphrase"),
          std::string("ApCliSsid=Net"), std::string("ApCliBssid=02:00:00:00:00:01"),
          std::string("ApCliEnable=1"), channel})
        commands += set(interface, text);
    return commands;
}

/// Whether a call sends what it should, and nothing else.
template <typename Call>
verdict sends(const std::string& expected, Call call) {
    tell("received", "anew");
    const int result = call();
    const std::string sent = received();
    if (result != 0)
        return {false, "the call failed after\n" + sent};
    if (sent != expected)
        return {false, "the driver received\n" + sent};
    return {true, std::to_string(sent.size()) + " bytes as asked"};
}

verdict access_point_mode() {
    return sends(access_point_commands(),
                 [] { return run_ap_mode(ssid, AUTH_WPA2PSK, ENC_AES, key); });
}

int join(int channel) {
    return run_infra_mode(ssid, bssid, AUTH_WPA2PSK, ENC_TKIP_AES, key, channel, 1);
}

verdict station_2g() {
    return sends(station("wlan0", "CountryRegion=5", "Channel=6"), [] { return join(6); });
}

verdict station_5g() {
    return sends(station("apclii0", "CountryRegionABand=7", "Channel=36"), [] { return join(36); });
}

verdict station_automatic() {
    return sends(station("wlan0", "CountryRegion=5", "Channel=999") +
                     station("apclii0", "CountryRegionABand=7", "Channel=1000"),
                 [] { return join(0); });
}

verdict repeater() {
    return sends(access_point_commands() + set("ra0", "AutoChannelSel=2") +
                     station("wlan0", "CountryRegion=5", "Channel=6"),
                 [] {
                     return run_repeater_mode(ssid, AUTH_WPA2PSK, ENC_AES, key, ssid, bssid,
                                              AUTH_WPA2PSK, ENC_TKIP_AES, key, 6);
                 });
}

/// Two access points, the first of which lets the station of these checks in.
verdict driver_is_ready() {
    output_of("ifconfig ra0 up");
    air points{};
    points.count = 2;
    for (int i = 0; i < points.count; ++i) {
        ::access_point& point = points.points[i];
        const std::string name = i == 0 ? ssid : "Caf\xc3\xa9 \"5\"";
        std::memcpy(point.ssid, name.data(), name.size());
        point.ssid_length = static_cast<std::uint8_t>(name.size());
        point.bssid[0] = 2;
        point.bssid[5] = static_cast<std::uint8_t>(i + 1);
        point.security = i == 0 ? AIR_WPA2 : AIR_OPEN;
        point.cipher = i == 0 ? AIR_AES : AIR_PLAIN;
        point.mode = AIR_MASTER;
        point.quality = static_cast<std::uint8_t>(80 - i);
        point.level = static_cast<std::int8_t>(-40 - i);
        point.mhz = static_cast<std::uint16_t>(i == 0 ? 2437 : 5180);
        std::memcpy(point.key, key, sizeof key);
    }
    tell("air", {reinterpret_cast<const char*>(&points), sizeof points});
    return {does_ifup("ra0") == 1, "ra0 is up, with two access points in the air"};
}

verdict joins() {
    output_of("ifconfig wlan0 up");
    const int result = join(6);
    return {result == 0 && does_wifi_associated("wlan0") == 1 && get_wifi_channel("wlan0") == 6,
            "channel " + std::to_string(get_wifi_channel("wlan0"))};
}

verdict figures() {
    WIFI_INFO info{};
    const int result = get_wifi_info(info);
    return {result == 0 && info.level == -40 && info.oid_0108 == -40 && info.noise == -95,
            "level " + std::to_string(info.level) + ", noise " + std::to_string(info.noise)};
}

verdict survey(char layout) {
    tell("survey_layout", {layout});
    tell("received", "anew");
    std::vector<sites> list;
    if (run_site_survey(list) != 0 || list.size() != 2)
        return {false, std::to_string(list.size()) + " listed"};
    const bool same = std::strcmp(list[0].ssid, ssid) == 0 &&
                      std::strcmp(list[0].bssid, bssid) == 0 && list[0].channel == 6 &&
                      std::strcmp(list[0].encryption, "AES") == 0 &&
                      std::strcmp(list[1].ssid, "Caf\xc3\xa9 \"5\"") == 0 && list[1].channel == 36;
    // iwpriv counts the text's terminator.
    const bool asked = received() == "ra0 set 13 SiteSurvey=1\nra0 survey 8192 \n";
    return {same && asked, std::string(list[0].ssid) + " and " + list[1].ssid};
}

constexpr check checks[] = {
    {"mediatek: the driver is ready", driver_is_ready},
    {"mediatek: access point", access_point_mode},
    {"mediatek: station, 2.4 GHz", station_2g},
    {"mediatek: station, 5 GHz", station_5g},
    {"mediatek: station, automatic channel", station_automatic},
    {"mediatek: repeater", repeater},
    {"mediatek: joins", joins},
    {"mediatek: radio figures", figures},
    {"mediatek: survey, first layout", [] { return survey('1'); }},
    {"mediatek: survey, second layout", [] { return survey('2'); }},
};

} // namespace

int main() {
    return report_all(checks);
}
