// SPDX-License-Identifier: MIT
// What wlanctl doctor looks for in the daemons that run, and in what they are told.

#include "daemon_checks.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

#include "control_socket.h"
#include "daemons.h"
#include "programs.h"

namespace {

constexpr char configuration[] = "/tmp/hostapd.conf";
constexpr char adapters_driver[] = "rtl871xdrv";

std::string configured(const std::string& name) {
    std::ifstream file(configuration);
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, name.size() + 1, name + "=") == 0)
            return line.substr(name.size() + 1);
    }
    return "";
}

bool is_script(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return file.get() == '#' && file.get() == '!';
}

/// The one that was built with the adapter's driver takes 40 MHz everywhere; a script that names
/// the capability takes it out.
bool heeds_standard(const std::string& hostapd) {
    return is_script(hostapd) ? !file_names(hostapd, "HT40")
                              : !file_names(hostapd, adapters_driver);
}

void check_driver(const std::string& hostapd, std::vector<answer>& checks) {
    const std::string driver = configured("driver");
    if (!driver.empty()) {
        const bool known = file_names(hostapd, driver);
        checks.push_back(
            checked(std::string("driver in ") + configuration, driver,
                    known ? answer()
                          : answer("no access point: " + hostapd + " does not know this driver")));
    }
}

/// A stock hostapd 2.10 refuses the channel above on these, where 802.11n allows none or where
/// nobody may be the first to send.
void check_width(const std::string& hostapd, std::vector<answer>& checks) {
    constexpr int first_refused = 8;
    constexpr int last_refused = 13;
    const int channel = std::atoi(configured("channel").c_str());
    if (configured("ht_capab").find("[HT40+]") == std::string::npos || !heeds_standard(hostapd))
        return;
    const bool refused = channel >= first_refused && channel <= last_refused;
    checks.push_back(
        checked("40 MHz above the channel", "channel " + std::to_string(channel),
                refused ? answer("no access point: a stock hostapd takes [HT40+] on channels 1 to "
                                 "7 only; have the driver recommend one of these, or a script take "
                                 "[HT40+] out")
                        : answer()));
}

void check_control(const daemon_process& daemon, const char* path, std::vector<answer>& checks) {
    if (!control_socket::is_built_in || !is_running(daemon))
        return;
    control_socket control(path);
    const bool answers = control.open() && control.reply_to("PING") == "PONG\n";
    checks.push_back(checked(std::string("control socket of ") + daemon.name,
                             answers ? answer(path) : answer("no answer"),
                             answers ? answer()
                                     : answer("why a network is not joined is guessed, and who is "
                                              "in the camera's own is not told")));
}

} // namespace

answer checked(const std::string& what, const answer& found, const answer& breaks) {
    return {{"what", what}, {"found", found}, {"breaks", breaks}};
}

bool file_names(const std::string& path, const std::string& text) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return bytes.find(text) != std::string::npos;
}

std::vector<answer> check_daemons() {
    std::vector<answer> checks;
    const std::string hostapd = find_program("hostapd", X_OK);
    if (!hostapd.empty()) {
        check_driver(hostapd, checks);
        check_width(hostapd, checks);
    }
    check_control(hostapd_daemon, hostapd_control, checks);
    check_control(supplicant_daemon, supplicant_control, checks);
    return checks;
}
