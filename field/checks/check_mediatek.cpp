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
/// @param pressed how many of their buttons for push-button set-up are.
void fill_air(int pressed) {
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
        point.button = i < pressed;
        point.mode = AIR_MASTER;
        point.quality = static_cast<std::uint8_t>(80 - i);
        point.level = static_cast<std::int8_t>(-40 - i);
        point.mhz = static_cast<std::uint16_t>(i == 0 ? 2437 : pressed == 2 ? 2412 : 5180);
        std::memcpy(point.key, key, sizeof key);
    }
    tell("air", {reinterpret_cast<const char*>(&points), sizeof points});
}

verdict driver_is_ready() {
    output_of("ifconfig ra0 up");
    fill_air(1);
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
    const std::uint32_t started = clock_time();
    if (run_site_survey(list) != 0 || list.size() != 2)
        return {false, std::to_string(list.size()) + " listed"};
    const std::uint32_t took = clock_time() - started;
    const bool same = std::strcmp(list[0].ssid, ssid) == 0 &&
                      std::strcmp(list[0].bssid, bssid) == 0 && list[0].channel == 6 &&
                      std::strcmp(list[0].encryption, "AES") == 0 &&
                      std::strcmp(list[1].ssid, "Caf\xc3\xa9 \"5\"") == 0 && list[1].channel == 36;
    // iwpriv counts the text's terminator.
    const bool asked = received() == "ra0 set 13 SiteSurvey=1\nra0 survey 8192 \n";
    return {same && asked, std::string(list[0].ssid) + " and " + list[1].ssid + ", in " +
                               std::to_string(took) + " ms"};
}

std::string session_start() {
    std::string commands;
    for (const char* text : {"CountryRegion=5", "ApCliEnable=0", "WscConfMode=1", "WscMode=2",
                             "ApCliEnable=1", "WscGetConf=1"})
        commands += set("wlan0", text);
    return commands;
}

/// Runs `wlanctl wps` while the driver has sessions end in a given way.
/// @return what the driver received, with one line for all looks at the status.
std::string session(char outcome, const std::string& command, bool& succeeded) {
    tell("wps", {outcome});
    tell("received", "anew");
    succeeded = output_of(command + " >/dev/null 2>/run/said && echo yes") == "yes";
    const std::string look = "wlan0 query 0x0751 4 \n";
    std::string sent = received();
    for (std::size_t at = sent.find(look + look); at != std::string::npos;
         at = sent.find(look + look))
        sent.erase(at, look.size());
    return sent;
}

verdict push_button() {
    bool succeeded = false;
    const std::string sent = session('0', "wlanctl wps", succeeded);
    _wireless_setting stored{};
    if (!succeeded || cam_get_client(&stored) != 0)
        return {false, "the session failed after\n" + sent};
    if (sent != session_start() + "wlan0 query 0x0751 4 \nwlan0 profile 4096 \n")
        return {false, "the driver received\n" + sent};
    if (!becomes_true(5, [] { return exist("/run/network-asked") == 1; }))
        return {false, "the network script was not run"};
    return {std::strcmp(stored.client_ssid, ssid) == 0 && stored.client_auth == AUTH_WPA2PSK &&
                stored.client_enc == ENC_AES && std::strcmp(stored.client_key, key) == 0 &&
                stored.client_channel == 6,
            std::string(stored.client_ssid) + " stored, on channel " +
                std::to_string(stored.client_channel)};
}

verdict push_button_fails() {
    const struct {
        char outcome;
        int pressed;
        const char* command;
        const char* status;
    } endings[] = {
        {'1', 1, "wlanctl wps --timeout 11", "[STATUS_WSC_FAIL]"},
        {'0', 0, "wlanctl wps --timeout 5", "[STATUS_WSC_PBC_NO_AP]"},
        {'0', 2, "wlanctl wps --timeout 4", "[STATUS_WSC_PBC_SESSION_OVERLAP]"},
        {'2', 1, "timeout -s INT 4 wlanctl wps", "[STATUS_WSC_SCAN_AP]"}, // goes on for ever
    };
    const std::string before = output_of("cat /etc/camera.conf");
    for (const auto& ending : endings) {
        fill_air(ending.pressed);
        bool succeeded = true;
        const std::string sent = session(ending.outcome, ending.command, succeeded);
        if (sent != session_start() + "wlan0 query 0x0751 4 \n" + set("wlan0", "WscStop=1"))
            return {false, std::string(ending.status) + ": the driver received\n" + sent};
        if (succeeded || output_of("cat /run/said").find(ending.status) == std::string::npos)
            return {false, output_of("cat /run/said")};
    }
    return {output_of("cat /etc/camera.conf") == before,
            "four endings, each stopped, and the store untouched"};
}

verdict baseband_register() {
    char interface[] = "ra0";
    char reg[] = "66";
    if (run_set_bbp(interface, reg, 0x1f, 0xff) != 0)
        return {false, "the call failed"};
    return sends("ra0 register 3 66\nra0 register 6 66=4f\n",
                 [&] { return run_set_bbp(interface, reg, 0x40, 0xf0); });
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
    {"mediatek: push button, from start to stored settings", push_button},
    {"mediatek: push button, sessions that fail", push_button_fails},
    {"mediatek: baseband register", baseband_register},
};

} // namespace

int main() {
    return report_all(checks);
}
