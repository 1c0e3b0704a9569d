// SPDX-License-Identifier: MIT
// The Realtek family on real radios, with real daemons: what the library brings about is what the
// system's own tools see.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "crowd.h"
#include "libwlan/libwlan.h"
#include "report.h"
#include "scan_listing.h"
#include "shell.h"

namespace {

namespace fs = std::filesystem;

char office[] = "Office";
char guests[] = "Guests";
char office_key[] = "office passphrase";
char wrong_key[] = "not the passphrase";
char nothing[] = "";

/// The name as the library lists it: the longest ones come with a blank.
std::string shown(const std::string& name) {
    return name.size() == 32 ? name + " " : name;
}

bool is_among(const sites& site, const std::vector<listed_point>& points) {
    for (const listed_point& point : points) {
        if (shown(point.name) == site.ssid && point.bssid == site.bssid &&
            point.channel == site.channel && point.security == site.authentication)
            return true;
    }
    return false;
}

/// Whether a survey lists each named access point that a tool prints once per name, as it is there.
verdict compare_air(const std::string& command) {
    const std::vector<listed_point> points = read_listing(output_of(command));
    std::vector<sites> survey;
    if (run_site_survey(survey) != 0)
        return {false, "the survey failed"};
    std::set<std::string> missing;
    for (const listed_point& point : points) {
        if (!point.name.empty())
            missing.insert(shown(point.name));
    }
    const std::size_t names = missing.size();
    for (const sites& site : survey) {
        if (!is_among(site, points) || missing.erase(site.ssid) == 0)
            return {false, std::string("not so in the air: ") + site.ssid + " " + site.bssid};
    }
    if (!missing.empty())
        return {false, "not listed: " + *missing.begin()};
    return {names >= 7,
            std::to_string(points.size()) + " access points, " + std::to_string(names) + " names"};
}

/// A scan misses beacons, the more the busier this machine is.
verdict same_air(const std::string& command) {
    verdict found = compare_air(command);
    for (int tries = 1; tries < 3 && !found.passed; ++tries)
        found = compare_air(command);
    return found;
}

verdict survey_is_what_iw_sees() {
    // Here iw never sees its own scan end, so it is told in steps; twice, as one scan may miss a
    // beacon.
    output_of("ip link set wlan0 up");
    output_of("for _ in 1 2; do iw dev wlan0 scan trigger; sleep 6; done");
    return same_air("iw dev wlan0 scan dump");
}

/// Looks once more: a scan misses beacons, and the kernel keeps those of the last half minute.
bool whole_crowd_is_seen() {
    output_of("iw dev wlan0 scan trigger; sleep 4");
    return output_of("iw dev wlan0 scan dump | grep -c 'SSID: Crowd'") ==
           std::to_string(crowd::size);
}

verdict survey_of_a_crowd() {
    output_of("ip link set wlan0 up");
    const crowd neighbours;
    if (!becomes_true(9, whole_crowd_is_seen))
        return {false, "iw does not see all of it"};
    const verdict found = same_air("iw dev wlan0 scan dump");
    const int size = scan_results_size();
    return {found.passed && size > 0x8000,
            found.seen + " in " + std::to_string(size) + " bytes of results"};
}

/// Whether the station is past the handshake, which an association alone does not say.
bool is_authorized() {
    return output_of("iw dev wlan0 station dump").find("authorized:\tyes") != std::string::npos;
}

verdict join(char* ssid, auth_from_cam auth, enc_from_cam enc, char* key) {
    if (run_infra_mode(ssid, nothing, auth, enc, key, 0, 1) != 0)
        return {false, "the call failed"};
    const bool joined =
        becomes_true(20, [] { return does_wifi_associated("wlan0") == 1 && is_authorized(); });
    const std::string link = output_of("iw dev wlan0 link");
    return {joined && link.find(std::string("SSID: ") + ssid) != std::string::npos,
            link.substr(0, link.find('\n'))};
}

verdict wrong_key_does_not_join() {
    if (run_infra_mode(office, nothing, AUTH_WPA2PSK, ENC_AES, wrong_key, 0, 1) != 0)
        return {false, "the call failed"};
    if (becomes_true(10, is_authorized))
        return {false, "joined"};
    return {true, "not joined after 10 seconds"};
}

/// Has a station of another radio join the camera and ask for an address.
verdict visit() {
    const std::string address = output_of("visitor Camera 'camera passphrase'");
    const bool is_from_the_pool = address.size() == 14 && address.rfind("192.168.10.1", 0) == 0;
    return {is_from_the_pool, "the visitor got " + (address.empty() ? "nothing" : address)};
}

verdict stop_takes_the_access_point_down() {
    if (run_stop_ap_mode() != 0)
        return {false, "the call failed"};
    for (const char* file : {"/tmp/hostapd.pid", "/tmp/udhcpd.pid"}) {
        if (exist(file) != 0)
            return {false, std::string("left: ") + file};
    }
    if (!output_of("pidof udhcpd").empty())
        return {false, "udhcpd still runs"};
    if (output_of("pidof hostapd.debian") != output_of("cat /run/neighbours.pid"))
        return {false, "hostapd still runs"};
    return {does_ifup("wlan1") == 0, "no daemon, no pid file, interface down"};
}

verdict repeater_does_both() {
    if (run_ap_mode_base_db() != 0 || run_repeater_mode_base_db() != 0)
        return {false, "a call failed"};
    if (!becomes_true(20, is_authorized))
        return {false, "not joined"};
    return visit();
}

/// What there is of processes, by name.
std::map<std::string, int> processes() {
    std::map<std::string, int> counts;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream stat(entry.path() / "stat");
        std::string number;
        std::string name;
        std::string state;
        if (std::isdigit(static_cast<unsigned char>(entry.path().filename().string()[0])) != 0 &&
            stat >> number >> name >> state && name.rfind("(kworker", 0) != 0)
            ++counts[name + (state == "Z" ? " zombie" : "")];
    }
    return counts;
}

/// How many descriptors are open on what is not the console.
int descriptors() {
    int count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::read_symlink(entry.path(), error) != "/dev/console")
            ++count;
    }
    return count;
}

void stop_all() {
    run_stop_ap_mode();
    send_signal_ps("/tmp/wpa_supplicant.pid", SIGTERM, 1);
}

verdict cycles_leave_nothing() {
    stop_all();
    const auto before = processes();
    const int open_before = descriptors();
    for (int cycle = 0; cycle < 10; ++cycle) {
        if (run_ap_mode_base_db() != 0 || run_repeater_mode_base_db() != 0)
            return {false, "a start failed"};
        stop_all();
    }
    for (const auto& [name, count] : processes()) {
        if (before.count(name) == 0 || before.at(name) < count)
            return {false, "left: " + name};
    }
    return {descriptors() == open_before, std::to_string(descriptors() - open_before) +
                                              " descriptors besides the console's, no process"};
}

// vm/run names the groups, the words before the colon, that each of its machines runs.
const std::vector<check> checks = {
    {"survey: the list is what iw sees", survey_is_what_iw_sees},
    {"survey: the list is what iwlist sees", [] { return same_air("iwlist wlan0 scan"); }},
    {"crowd: is listed, too", survey_of_a_crowd},
    {"station: joins with WPA2", [] { return join(office, AUTH_WPA2PSK, ENC_AES, office_key); }},
    {"station: joins an open network", [] { return join(guests, AUTH_OPEN, ENC_NONE, nothing); }},
    {"station: a wrong key does not join", wrong_key_does_not_join},
    {"access point: a visitor joins and gets an address",
     [] {
         return run_ap_mode_base_db() == 0 ? visit() : verdict{false, "the call failed"};
     }},
    {"access point: stop takes all of it down", stop_takes_the_access_point_down},
    {"repeater: joined, and a visitor gets an address", repeater_does_both},
    {"cycles: ten starts and stops leave nothing", cycles_leave_nothing},
};

} // namespace

/// Its arguments are the groups of checks to run.
int main(int /*argc*/, char** argv) {
    return report(checks, argv + 1);
}
