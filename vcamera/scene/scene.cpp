// SPDX-License-Identifier: MIT
// Making a camera of a scene.

#include "vcamera/scene/scene.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <arpa/inet.h>

#include "vcamera/model/camera_state.h"
#include "vcamera/model/network_tables.h"
#include "vcamera/model/paths.h"
#include "vcamera/scene/json_reader.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

const std::vector<json_keyword> adapters = {{"none", 0}, {"mediatek", 1}, {"realtek", 2}};
const std::vector<json_keyword> usb_listings = {{"proc", 0}, {"lsusb", 1}, {"absent", 2}};
const std::vector<json_keyword> interface_states = {{"up", 1}, {"down", 0}};

// The usual cipher of each security has the same number.
const std::vector<json_keyword> securities = {{"open", AIR_OPEN},
                                              {"wep", AIR_WEP},
                                              {"wpa", AIR_WPA},
                                              {"wpa2", AIR_WPA2},
                                              {"mixed", AIR_WPA | AIR_WPA2},
                                              {"wpa-server", AIR_WPA | AIR_SERVER},
                                              {"wpa2-server", AIR_WPA2 | AIR_SERVER},
                                              {"mixed-server", AIR_WPA | AIR_WPA2 | AIR_SERVER}};
const std::vector<json_keyword> ciphers = {{"none", AIR_PLAIN},
                                           {"wep", AIR_RC4},
                                           {"tkip", AIR_TKIP},
                                           {"aes", AIR_AES},
                                           {"tkipaes", AIR_TKIP | AIR_AES}};

const std::vector<json_keyword> wps_outcomes = {
    {"works", MTK_WPS_WORKS}, {"fails", MTK_WPS_FAILS}, {"stalls", MTK_WPS_STALLS}};

const std::vector<json_keyword> profile_forms = {{"blank-lines", MTK_PROFILE_BLANK_LINES},
                                                 {"trailer", MTK_PROFILE_TRAILER},
                                                 {"mixed", MTK_PROFILE_MIXED}};

const std::vector<json_keyword> modes = {
    {"auto", 0},     {"adhoc", AIR_ADHOC}, {"managed", 2}, {"master", AIR_MASTER},
    {"repeater", 4}, {"secondary", 5},     {"monitor", 6}};

const std::vector<json_keyword> hostapd_builds = {
    {"adapter", static_cast<int>(hostapd_build::adapter)},
    {"stock", static_cast<int>(hostapd_build::stock)},
    {"wrapped", static_cast<int>(hostapd_build::wrapped)}};

const std::vector<json_keyword> frequency_forms = {
    {"kernel", static_cast<int>(frequency_form::kernel)},
    {"channel", static_cast<int>(frequency_form::channel)}};

const std::vector<json_keyword> manners = {{"good", static_cast<int>(control_manner::good)},
                                           {"lies", static_cast<int>(control_manner::lies)},
                                           {"floods", static_cast<int>(control_manner::floods)},
                                           {"silent", static_cast<int>(control_manner::silent)}};

/// By adapter, in the order of its driver's vifs.
const std::vector<std::string> interface_names[] = {
    {}, {"ra0", "wlan0", "apclii0"}, {"wlan0", "wlan1"}};

constexpr const char* usb_devices[] = {
    "P:  Vendor=1d6b ProdID=0002 Rev= 2.06\n",
    "P:  Vendor=1d6b ProdID=0002 Rev= 2.06\nP:  Vendor=148f ProdID=7601 Rev= 0.00\n",
    "P:  Vendor=1d6b ProdID=0002 Rev= 2.06\nP:  Vendor=0bda ProdID=8179 Rev= 0.00\n"};

void copy_text(const json_reader& from, short_text& target) {
    const std::string text = from.text(sizeof target - 1);
    std::copy(text.begin(), text.end(), target);
}

/// Octets of two hexadecimal digits each, with a separator between them.
std::string octets(const json_reader& from, std::size_t most, const std::string& separator) {
    const std::string text = from.text(3 * most) + separator;
    const std::size_t step = 2 + separator.size();
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += step) {
        if (std::isxdigit(text[i]) == 0 || std::isxdigit(text[i + 1]) == 0 ||
            text.compare(i + 2, separator.size(), separator) != 0 || bytes.size() == most)
            from.refuse("at most " + std::to_string(most) + " octets of two hexadecimal digits");
        bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

int mhz_of_channel(int channel) {
    if (channel == 14)
        return 2484;
    return (channel < 14 ? 2407 : 5000) + 5 * channel;
}

void read_address(const json_reader& from, std::uint8_t (&address)[6]) {
    const std::string bytes = octets(from, sizeof address, ":");
    if (bytes.size() != sizeof address)
        from.refuse("six octets");
    std::copy(bytes.begin(), bytes.end(), address);
}

/// Milliseconds, in microseconds.
std::int64_t read_time(const json_reader& from) {
    return std::int64_t{1000} * from.number(0, INT_MAX);
}

/// @param now by the camera's clock
access_point read_access_point(const json_reader& from, std::int64_t now) {
    from.only({"ssid", "ssid_hex", "hidden", "bssid", "channel", "mhz", "security", "cipher",
               "group", "mode", "level", "quality", "key", "button", "rejects",
               "vanishes_after_ms"});
    access_point point{};
    const json_reader hex = from.get("ssid_hex");
    const std::string ssid =
        hex.given() ? octets(hex, AIR_SSID_MAX, "") : from.get("ssid").text(AIR_SSID_MAX);
    std::copy(ssid.begin(), ssid.end(), point.ssid);
    point.ssid_length = static_cast<std::uint8_t>(ssid.size());
    read_address(from.get("bssid"), point.bssid);
    const int mhz = mhz_of_channel(from.get("channel", 1).number(1, 196));
    point.mhz = static_cast<std::uint16_t>(from.get("mhz", mhz).number(2412, 5980));
    point.security = static_cast<std::uint8_t>(from.get("security", "open").word(securities));
    const json_reader cipher = from.get("cipher");
    point.cipher = static_cast<std::uint8_t>(cipher.given() ? cipher.word(ciphers)
                                                            : point.security & ~AIR_SERVER);
    const json_reader group = from.get("group");
    const int weakest = point.cipher & -point.cipher;
    point.group = static_cast<std::uint8_t>(group.given() ? group.word(ciphers) : weakest);
    point.hidden = from.get("hidden", false).yes() ? 1 : 0;
    point.button = from.get("button", false).yes() ? 1 : 0;
    point.mode = static_cast<std::uint8_t>(from.get("mode", "master").word(modes));
    point.level = static_cast<std::int8_t>(from.get("level", -60).number(-127, 0));
    const int percent = std::clamp(2 * (point.level + 100), 0, 100);
    point.quality = static_cast<std::uint8_t>(from.get("quality", percent).number(0, 255));
    const std::string key = from.get("key", "").text(AIR_KEY_MAX);
    std::copy(key.begin(), key.end(), point.key);
    point.rejects = static_cast<std::uint16_t>(from.get("rejects", 0).number(0, UINT16_MAX));
    if (const json_reader after = from.get("vanishes_after_ms"); after.given())
        point.vanishes_at = std::max<std::int64_t>(now + read_time(after), 1);
    return point;
}

int read_errno(const json_reader& from) {
    const std::string name = from.text(32);
    for (int number = 1; number < 256; ++number) {
        if (strerrorname_np(number) != nullptr && name == strerrorname_np(number))
            return number;
    }
    from.refuse("the name of an errno, like EIO");
}

scene_fault read_fault(const json_reader& from) {
    from.only({"call", "match", "nth", "times", "errno"});
    scene_fault fault{};
    copy_text(from.get("call"), fault.call);
    copy_text(from.get("match", ""), fault.match);
    fault.nth = from.get("nth", 1).number(1, INT_MAX);
    fault.times = from.get("times", 1).number(0, INT_MAX);
    fault.error = read_errno(from.get("errno"));
    return fault;
}

void read_interfaces(const json_reader& scene, camera_state& state) {
    const auto& names = interface_names[static_cast<int>(state.adapter)];
    json all = json::object();
    for (const std::string& name : names)
        all[name] = {{"state", "up"}};
    for (const auto& [name, entry] : scene.get("interfaces", all).entries()) {
        entry.only({"state"});
        const auto found = std::find(names.begin(), names.end(), name);
        if (found == names.end())
            entry.refuse("an interface that this adapter has");
        const auto number = found - names.begin();
        name.copy(state.interfaces[number], sizeof(short_text) - 1);
        up_flag(state, static_cast<int>(number)) = entry.get("state").word(interface_states) != 0;
    }
}

void read_addresses(const json_reader& scene, camera_state& state) {
    for (const auto& [name, entry] : scene.get("addresses", json::object()).entries()) {
        entry.only({"address", "after_ms"});
        const auto* found =
            std::find(std::begin(state.interfaces), std::end(state.interfaces), name);
        if (name.empty() || found == std::end(state.interfaces))
            entry.refuse("an interface that the camera has");
        in_addr address{};
        if (inet_pton(AF_INET, entry.get("address").text(INET_ADDRSTRLEN).c_str(), &address) != 1)
            entry.get("address").refuse("an IPv4 address");
        interface_addresses& kept = state.addresses[found - std::begin(state.interfaces)];
        kept.offered = address.s_addr;
        kept.after = read_time(entry.get("after_ms", 0));
    }
}

visitor read_visitor(const json_reader& from) {
    from.only({"address", "after_ms", "signal"});
    visitor visitor{};
    read_address(from.get("address"), visitor.address);
    visitor.after = read_time(from.get("after_ms", 0));
    visitor.signal = static_cast<std::int8_t>(from.get("signal", -60).number(-127, 0));
    return visitor;
}

void read_survey(const json_reader& scene, camera_state& state) {
    state.mtk.survey_layout = static_cast<std::uint8_t>(scene.get("survey_table", 2).number(1, 2));
    const json_reader scan = scene.get("scan", json::object());
    scan.only({"busy", "hint", "max_quality", "vendor_bytes"});
    realtek_radio& radio = state.realtek;
    radio.busy = scan.get("busy", 0).number(0, INT_MAX);
    radio.hint = scan.get("hint", false).yes() ? 1 : 0;
    radio.max_quality = static_cast<std::uint8_t>(scan.get("max_quality", 100).number(0, 255));
    radio.vendor_bytes = static_cast<std::uint8_t>(scan.get("vendor_bytes", 0).number(0, 255));
}

void read_wps(const json_reader& scene, mtk_wps& wps) {
    wps.outcome = static_cast<std::uint8_t>(scene.get("wps", "works").word(wps_outcomes));
    const json_reader forms = scene.get("wps_profile", json::array());
    for (const json_reader& form : forms.items(profile_forms.size()))
        wps.profile_form |= static_cast<std::uint8_t>(form.word(profile_forms));
}

void read_registers(const json_reader& scene, mtk_radio& radio) {
    for (const auto& [number, value] : scene.get("registers", json::object()).entries()) {
        const std::string at = octets(json_reader(number, "scene.registers: a number"), 1, "");
        for (const char byte : octets(value, 4, "")) {
            std::uint32_t& kept = radio.registers[static_cast<std::uint8_t>(at.at(0))];
            kept = kept << 8 | static_cast<std::uint8_t>(byte);
        }
    }
}

/// Reads a list into places of fixed number.
template <typename Entry, std::size_t most, typename Reader>
void read_list(const json_reader& from, Entry (&places)[most], const Reader& read) {
    std::size_t i = 0;
    for (const json_reader& item : from.items(most))
        read(item, places[i++]);
}

json parse(const std::string& text) {
    try {
        return json::parse(text);
    } catch (const json::parse_error& error) {
        throw wrong_scene(error.what());
    }
}

camera_state read_state(const json_reader& scene) {
    scene.only({"adapter",     "usb",          "interfaces",   "wired",
                "clock_ms",    "air",          "best_channel", "hostapd",
                "frequencies", "survey_table", "scan",         "wps",
                "wps_profile", "registers",    "answers",      "missing_programs",
                "stubborn",    "faults",       "files",        "addresses",
                "visitors",    "control"});
    camera_state state{};
    std::copy(std::begin(state_layout), std::end(state_layout), state.layout);
    state.size = sizeof state;
    state.adapter = static_cast<adapter_family>(scene.get("adapter").word(adapters));
    state.usb = static_cast<usb_listing>(scene.get("usb", "proc").word(usb_listings));
    state.wired = scene.get("wired", false).yes();
    state.clock_us = std::int64_t{1000} * scene.get("clock_ms", 0).number(0, INT_MAX);
    read_interfaces(scene, state);
    read_addresses(scene, state);
    state.control.manner = static_cast<control_manner>(scene.get("control", "good").word(manners));
    state.hostapd =
        static_cast<hostapd_build>(scene.get("hostapd", "adapter").word(hostapd_builds));
    state.realtek.frequencies =
        static_cast<frequency_form>(scene.get("frequencies", "kernel").word(frequency_forms));
    read_survey(scene, state);
    read_wps(scene, state.mtk.wps);
    read_registers(scene, state.mtk);
    const json none = json::array();
    read_list(scene.get("air", none), state.air.points,
              [&](const json_reader& item, access_point& point) {
                  point = read_access_point(item, state.clock_us);
                  ++state.air.count;
              });
    read_list(scene.get("visitors", none), state.visitors,
              [&](const json_reader& item, visitor& visitor) {
                  visitor = read_visitor(item);
                  ++state.visitors_expected;
              });
    read_list(scene.get("missing_programs", none), state.missing_programs, copy_text);
    read_list(scene.get("stubborn", none), state.stubborn, copy_text);
    read_list(scene.get("faults", none), state.faults,
              [](const json_reader& item, scene_fault& fault) { fault = read_fault(item); });
    return state;
}

void write_file(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path);
    if (!(file << text).flush())
        throw std::runtime_error(path.string() + ": cannot write: " + std::strerror(errno));
}

std::string join_lines(const json_reader& lines) {
    std::string text;
    for (const json_reader& line : lines.items(INT_MAX))
        text += line.text(INT_MAX) + "\n";
    return text;
}

/// What the driver is to answer instead of what it hears: as lines, or as octets.
void write_answers(const json_reader& answers, const std::string& scratch) {
    answers.only({"survey", "scan", "profile", "register"});
    for (const auto& [name, answer] : answers.entries()) {
        write_file(fs::path(scratch) / "answers" / name,
                   answer.is_list() ? join_lines(answer) : octets(answer, UINT16_MAX, ""));
    }
}

void write_files(const json_reader& scene, camera_state& state, const std::string& scratch) {
    write_file(scratch + "/state", {reinterpret_cast<const char*>(&state), sizeof state});
    write_file(scratch + "/journal", "");
    write_file(scratch + "/dev/console", "");
    for (const char* folder : {"/etc", "/tmp", "/run", "/var"})
        fs::create_directories(scratch + folder);
    fs::create_symlink("../run", scratch + "/var/run");
    if (state.usb == usb_listing::proc)
        write_file(scratch + "/proc/bus/usb/devices", usb_devices[static_cast<int>(state.adapter)]);
    for (int i = 0; i < MTK_VIFS; ++i) {
        if (state.interfaces[i][0] != '\0')
            show_operstate(state, i, scratch);
    }
    show_network_tables(state, {}, scratch);
    if (const json_reader channel = scene.get("best_channel"); channel.given()) {
        write_file(scratch + "/proc/net/rtl8188eu/wlan1/best_channel",
                   "best_channel_24G = " + std::to_string(channel.number(1, 14)) + "\n");
    }
    for (const auto& [path, lines] : scene.get("files", json::object()).entries()) {
        if (!belongs_to_camera(path))
            lines.refuse("a file of the camera");
        write_file(scratch + path, join_lines(lines));
    }
    write_answers(scene.get("answers", json::object()), scratch);
}

/// Removes what an earlier camera left; a folder that holds something else is not touched.
void clear(const std::string& scratch) {
    fs::create_directories(scratch);
    if (!fs::is_empty(scratch) && !fs::exists(scratch + "/state"))
        throw std::runtime_error(scratch + ": is not empty, and no camera's scratch folder");
    fs::permissions(scratch, fs::perms::owner_all); // files in it hold passphrases
    for (const char* part : {"answers", "dev", "etc", "proc", "run", "sys", "tmp", "var"})
        fs::remove_all(fs::path(scratch) / part);
}

} // namespace

void make_camera(const std::string& text, const std::string& scratch) {
    const json_reader scene(parse(text), "scene");
    camera_state state = read_state(scene);
    clear(scratch);
    write_files(scene, state, scratch);
    write_file(scratch + "/scene.json", text);
}

std::string read_text(const std::string& path) {
    errno = 0;
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}
