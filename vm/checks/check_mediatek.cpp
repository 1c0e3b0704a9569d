// SPDX-License-Identifier: MIT
// The MediaTek family on a real kernel: what its driver received is what was asked, byte for byte.

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

#include "libwlan/libwlan.h"
#include "report.h"
#include "shell.h"
#include "vcamera/model/air.h"

namespace {

char ssid[] = "Net";
char bssid[] = "02:00:00:00:00:01";
char key[] = "passphrase";

const std::string folder = "/sys/kernel/debug/mtk_radio/";

/// The driver takes a file's content in one piece.
void tell(const std::string& name, const std::string& text) {
    const int file = open((folder + name).c_str(), O_WRONLY);
    const ssize_t written = write(file, text.data(), text.size());
    if (written != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("cannot tell the driver its " + name + ": " +
                                 std::strerror(errno));
    }
    close(file);
}

std::string received() {
    std::ifstream file(folder + "received");
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What the driver hears of these Key=Value texts.
std::string sets(const std::string& interface, const std::vector<std::string>& texts) {
    std::ostringstream commands;
    for (const std::string& text : texts)
        commands << interface << " set " << text.size() << ' ' << text << '\n';
    return commands.str();
}

const std::string access_point_commands =
    sets("ra0", {"CountryRegion=5", "RadioOn=1", "AuthMode=WPA2PSK", "EncrypType=AES", "SSID=Net",
                 "WPAPSK=passphrase", "SSID=Net"});

std::string station(const std::string& interface, const std::string& channel) {
    return sets(interface,
                {"ApCliEnable=0", interface == "wlan0" ? "CountryRegion=5" : "CountryRegionABand=7",
                 "ApCliAuthMode=WPA2PSK", "ApCliEncrypType=TKIPAES", "ApCliSsid=Net",
                 "WpaMixPairCipher=WPA_TKIP_WPA2_AES", "ApCliWPAPSK=passphrase", "ApCliSsid=Net",
                 "ApCliBssid=02:00:00:00:00:01", "ApCliEnable=1", "Channel=" + channel});
}

const std::string session_start =
    sets("wlan0", {"CountryRegion=5", "ApCliEnable=0", "WscConfMode=1", "WscMode=2",
                   "ApCliEnable=1", "WscGetConf=1"});

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
    return sends(access_point_commands,
                 [] { return run_ap_mode(ssid, AUTH_WPA2PSK, ENC_AES, key); });
}

int join(int channel) {
    return run_infra_mode(ssid, bssid, AUTH_WPA2PSK, ENC_TKIP_AES, key, channel, 1);
}

verdict repeater() {
    return sends(access_point_commands + sets("ra0", {"AutoChannelSel=2"}) + station("wlan0", "6"),
                 [] {
                     return run_repeater_mode(ssid, AUTH_WPA2PSK, ENC_AES, key, ssid, bssid,
                                              AUTH_WPA2PSK, ENC_TKIP_AES, key, 6);
                 });
}

/// Two access points, the first of which lets the station of these checks in.
/// @param pressed how many of their buttons for push-button set-up are.
void fill_air(int pressed) {
    const auto mhz = static_cast<std::uint16_t>(pressed == 2 ? 2412 : 5180);
    // clang-format off
    const air points = {2, {
        // name, its length, BSSID, security, cipher, group, hidden, button, mode, quality,
        // level, MHz, key, rejects, gone, vanishes
        {"Net", 3, {2, 0, 0, 0, 0, 1}, AIR_WPA2, AIR_AES, 0, 0, pressed > 0, AIR_MASTER, 80, -40,
         2437, "passphrase", 0, 0, 0},
        {"Caf\xc3\xa9 \"5\"", 9, {2, 0, 0, 0, 0, 2}, AIR_OPEN, AIR_PLAIN, 0, 0, pressed > 1,
         AIR_MASTER, 79, -41, mhz, "passphrase", 0, 0, 0}}};
    // clang-format on
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

/// Says one Key=Value text to the driver, through a descriptor of the caller's if there is one.
/// @return 0 or the errno.
int say(const std::string& interface, const std::string& text, int descriptor = -1) {
    wlan radio;
    if (radio.init() != 0)
        return errno;
    radio.set_interface(const_cast<char*>(interface.c_str()));
    const int own = radio.sock;
    radio.sock = descriptor >= 0 ? descriptor : own;
    const int error = radio.simple_set_private(const_cast<char*>(text.c_str())) == 0 ? 0 : errno;
    radio.sock = own;
    radio.release();
    std::fclose(radio.console); // a quiet command leaves it open
    return error;
}

verdict joins_by_steps() {
    const std::vector<std::string> before = {"ApCliEnable=0", "ApCliAuthMode=WPA2PSK",
                                             "ApCliEncrypType=AES", "ApCliBssid=02:00:00:00:00:01"};
    const struct {
        const char* name;
        std::vector<std::string> commands;
        int joined;
    } rows[] = {
        {"as the library has it",
         {"ApCliSsid=Net", "ApCliWPAPSK=passphrase", "ApCliEnable=1", "Channel=6"},
         1},
        {"passphrase under another SSID",
         {"ApCliSsid=Old", "ApCliWPAPSK=passphrase", "ApCliSsid=Net", "ApCliEnable=1", "Channel=6"},
         0},
        {"another channel",
         {"ApCliSsid=Net", "ApCliWPAPSK=passphrase", "ApCliEnable=1", "Channel=11"},
         0},
        {"automatic connecting",
         {"ApCliSsid=Net", "ApCliWPAPSK=passphrase", "ApCliEnable=1", "ApCliAutoConnect=1"},
         1},
    };
    for (const auto& row : rows) {
        for (const auto& commands : {before, row.commands}) {
            for (const std::string& command : commands) {
                if (say("wlan0", command) != 0)
                    return {false, std::string(row.name) + ": refused " + command};
            }
        }
        if (does_wifi_associated("wlan0") != row.joined)
            return {false, std::string(row.name) + (row.joined == 1 ? ": not" : ":") + " joined"};
    }
    return {true, std::to_string(std::size(rows)) + " sequences"};
}

verdict refuses() {
    const int no_socket = open("/dev/null", O_RDWR | O_CLOEXEC);
    const struct {
        const char* interface;
        const char* text;
        int descriptor;
        int error;
    } rows[] = {
        {"wlan0", "ApCliSsid=Net", -1, 0},    {"wlan0", "ApCliSsid=Net", no_socket, ENOTTY},
        {"ra0", "ApCliSsid=Net", -1, EINVAL}, {"wlan0", "SSID=Net", -1, EINVAL},
        {"nowhere", "SSID=Net", -1, ENODEV},
    };
    for (const auto& row : rows) {
        const int error = say(row.interface, row.text, row.descriptor);
        if (error != row.error) {
            return {false,
                    std::string(row.interface) + ' ' + row.text + ": " + std::strerror(error)};
        }
    }
    close(no_socket);
    return {true, "what belongs elsewhere, and what comes through no socket"};
}

/// How many access points the driver's table has.
std::size_t table_rows() {
    std::vector<sites> list;
    wlan radio;
    radio.init();
    radio.do_site_survey(list, false);
    radio.release();
    return list.size();
}

verdict survey_takes_time() {
    output_of("iwpriv ra0 set SiteSurvey=1");
    const std::size_t at_once = table_rows();
    sleep(4);
    const std::size_t later = table_rows();
    return {at_once == 0 && later == 2,
            std::to_string(at_once) + " at once, " + std::to_string(later) + " after four seconds"};
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
    const int result = run_site_survey(list);
    const std::uint32_t took = clock_time() - started;
    std::string seen;
    for (const sites& site : list) {
        seen += std::string(site.ssid) + " " + site.bssid + " " + site.encryption + " " +
                std::to_string(site.channel) + ", ";
    }
    const bool same = seen == "Net 02:00:00:00:00:01 AES 6, "
                              "Caf\xc3\xa9 \"5\" 02:00:00:00:00:02 NONE 36, ";
    // iwpriv counts the text's terminator.
    const bool asked = received() == "ra0 set 13 SiteSurvey=1\nra0 survey 8192 \n";
    const std::uint32_t again = clock_time();
    isMtkWifi();
    output_of("iwpriv ra0 set SiteSurvey=1");
    return {result == 0 && same && asked, seen + "in " + std::to_string(took) +
                                              " ms, of which lsusb and iwpriv take " +
                                              std::to_string(clock_time() - again)};
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

verdict push_button(char form) {
    tell("profile_form", {form});
    bool succeeded = false;
    const std::string sent = session('0', "wlanctl wps", succeeded);
    _wireless_setting stored{};
    if (!succeeded || cam_get_client(&stored) != 0)
        return {false, "the session failed after\n" + sent};
    if (sent != session_start + "wlan0 query 0x0751 4 \nwlan0 profile 4096 \n")
        return {false, "the driver received\n" + sent};
    if (!becomes_true(5, [] { return exist("/run/network-asked") == 1; }))
        return {false, "the network script was not run"};
    return {std::strcmp(stored.client_ssid, ssid) == 0 && stored.client_auth == AUTH_WPA2PSK &&
                stored.client_enc == ENC_AES && std::strcmp(stored.client_key, key) == 0 &&
                stored.client_channel == 6,
            std::string(stored.client_ssid) + " stored, on channel " +
                std::to_string(stored.client_channel)};
}

/// After a session on wlan0.
verdict profile_of_no_session() {
    char other[] = "ra0";
    wlan radio;
    const int result = radio.init() | radio.update_wsc_to_db_and_action(other);
    radio.release();
    return {result == -22, "answer " + std::to_string(result)};
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
        if (sent != session_start + "wlan0 query 0x0751 4 \n" + sets("wlan0", {"WscStop=1"}))
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

// vm/run names the groups, the words before the colon, that each of its machines runs.
const std::vector<check> checks = {
    {"ready: the driver is there", driver_is_ready},
    {"requests: access point", access_point_mode},
    {"requests: station, 2.4 GHz",
     [] { return sends(station("wlan0", "6"), [] { return join(6); }); }},
    {"requests: station, 5 GHz",
     [] { return sends(station("apclii0", "36"), [] { return join(36); }); }},
    {"requests: station, automatic channel",
     [] {
         return sends(station("wlan0", "999") + station("apclii0", "1000"), [] { return join(0); });
     }},
    {"requests: repeater", repeater},
    {"requests: joins", joins},
    {"requests: joins by steps", joins_by_steps},
    {"requests: refuses", refuses},
    {"requests: radio figures", figures},
    {"survey: first layout", [] { return survey('1'); }},
    {"survey: second layout", [] { return survey('2'); }},
    {"survey: takes its time", survey_takes_time},
    {"button: from start to stored settings", [] { return push_button('0'); }},
    {"button: blank lines and lines behind", [] { return push_button('3'); }},
    {"button: profile of another interface", profile_of_no_session},
    {"button: sessions that fail", push_button_fails},
    {"requests: baseband register", baseband_register},
};

} // namespace

/// Its arguments are the groups of checks to run.
int main(int /*argc*/, char** argv) {
    return report(checks, argv + 1);
}
