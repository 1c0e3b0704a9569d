// SPDX-License-Identifier: MIT
// Gives configuration files to Debian's hostapd, wpa_supplicant and udhcpd and to the virtual camera's
// model of them, and compares what they say, line by line.
//
//     daemon_check [--seed N] [--count N]
//
// Every file ends in a line that no daemon takes, so that none of them comes to touch a radio, an
// interface or a file; besides, they run in a network namespace without interfaces.

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <sched.h>

#include "vcamera/model/hostapd_keys.h"
#include "vcamera/model/hostapd_settings.h"
#include "vcamera/model/udhcpd_settings.h"
#include "vcamera/model/wpa_supplicant_keys.h"
#include "vcamera/model/wpa_supplicant_settings.h"

namespace fs = std::filesystem;

namespace {

using lines = std::vector<std::string>;

/// What a daemon says about a file; one message at least, about the last line.
struct answer {
    lines messages;
    std::string errors; // the count that hostapd prints
};

bool operator==(const answer& one, const answer& other) {
    return one.messages == other.messages && one.errors == other.errors;
}

struct checked_daemon {
    const char* name;
    const char* command; // with the file's path behind it
    const char* planted; // the last line
    std::size_t planted_messages;
    std::vector<lines> samples;
    std::string keys; // that may be put in
    std::function<answer(const std::string& text, const std::string& path)> model;
    std::function<bool(const std::string& key)> is_unjudged;
};

lines split_lines(const std::string& text) {
    std::istringstream stream(text);
    lines result;
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

std::string join(const lines& parts) {
    std::string text;
    for (const std::string& line : parts)
        text += line + "\n";
    return text;
}

// The real daemons --------------------------------------------------------------------------------

lines output_of(const std::string& command) {
    FILE* pipe = popen(("timeout 10 " + command + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        return {};
    std::string text;
    char buffer[4096];
    for (std::size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        text.append(buffer, got);
    pclose(pipe);
    return split_lines(text);
}

/// Of all that it prints, what it says about the file.
answer ask_real(const checked_daemon& daemon, const std::string& path) {
    answer said;
    for (const std::string& line : output_of(std::string(daemon.command) + " " + path)) {
        const std::size_t count = line.find(" errors found in configuration file");
        if (count != std::string::npos) {
            said.errors = line.substr(0, count);
        } else if (line.rfind("Line ", 0) == 0) {
            said.messages.push_back(line);
        } else if (line.rfind("udhcpd: ", 0) == 0) {
            said.messages.push_back(line.substr(std::strlen("udhcpd: ")));
        }
    }
    return said;
}

// The model ---------------------------------------------------------------------------------------

answer ask_hostapd(const std::string& text, const std::string& /*path*/) {
    const file_report report = read_hostapd_settings(text, hostapd_build::stock).report;
    answer said{{}, std::to_string(report.errors)};
    for (const std::string& message : report.messages) {
        if (message.rfind("Line ", 0) == 0) // as from the real one
            said.messages.push_back(message);
    }
    return said;
}

answer ask_supplicant(const std::string& text, const std::string& /*path*/) {
    return {read_supplicant_settings(text).report.messages, ""};
}

answer ask_udhcpd(const std::string& text, const std::string& path) {
    return {read_udhcpd_settings(text, path).messages, ""};
}

bool is_unjudged_in_supplicant(const std::string& key) {
    return is_unjudged_supplicant_key(key, false) || is_unjudged_supplicant_key(key, true);
}

// The files ---------------------------------------------------------------------------------------

constexpr const char* values[] = {"",
                                  "0",
                                  "1",
                                  "2",
                                  "3",
                                  "4",
                                  "-1",
                                  "-2",
                                  "7",
                                  "8",
                                  "9",
                                  "10",
                                  "11",
                                  "15",
                                  "16",
                                  "32",
                                  "63",
                                  "64",
                                  "100",
                                  "101",
                                  "255",
                                  "256",
                                  "2007",
                                  "2008",
                                  "2346",
                                  "2347",
                                  "65535",
                                  "65536",
                                  "4294967296",
                                  "0x10",
                                  "0x",
                                  "010",
                                  "1x",
                                  " 1",
                                  "1 ",
                                  "1.5",
                                  "abc",
                                  "yes",
                                  "g",
                                  "a",
                                  "b",
                                  "ad",
                                  "any",
                                  "ag",
                                  "acs_survey",
                                  "nl80211",
                                  "hostap",
                                  "wext",
                                  "rtl871xdrv",
                                  "none",
                                  "CCMP",
                                  "TKIP",
                                  "CCMP TKIP",
                                  " CCMP\tTKIP ",
                                  "WEP40",
                                  "NONE",
                                  "GCMP-256",
                                  "CCMP CCMP",
                                  "ccmp",
                                  "AES",
                                  "GTK_NOT_USED",
                                  "AES-128-CMAC",
                                  "BIP-GMAC-256",
                                  "WPA-PSK",
                                  "WPA-EAP",
                                  "WPA-PSK WPA-EAP",
                                  "WPA-PSK wpa-psk",
                                  "FT-PSK",
                                  "SAE",
                                  "IEEE8021X",
                                  "WPA-NONE",
                                  "WPS",
                                  "OPEN",
                                  "SHARED",
                                  "OPEN LEAP",
                                  "open",
                                  "WPA",
                                  "RSN",
                                  "WPA2",
                                  "RSN WPA",
                                  "WPA3",
                                  "00:11:22:33:44:55",
                                  "00:11:22:33:44",
                                  "0:1:2:3:4:5",
                                  "00-11-22-33-44-55",
                                  "192.168.8.1",
                                  "255.255.255.0",
                                  "1.2.3",
                                  "300.1.1.1",
                                  "192.168.8.1, 192.168.8.2",
                                  "10.0.0.0/8 10.127.0.1",
                                  "10.0.0.0/33 10.127.0.1",
                                  "10.0.0.0 10.127.0.1",
                                  "fe80::1",
                                  "6-0050F204-1",
                                  "6-0050F204",
                                  "0050F204-1",
                                  "x-0050F204-y",
                                  "01020300",
                                  "0102030",
                                  "0102030g",
                                  "12345678-9abc-def0-1234-56789abcdef0",
                                  "12345678-9abc-def0-1234-56789abcdef",
                                  "\"\"",
                                  "\"a\"",
                                  "\"a",
                                  "a\"",
                                  "\"a\"b\"",
                                  "P\"abc\"",
                                  "P\"abc",
                                  "\"12345678\"",
                                  "\"1234567\"",
                                  "\"pass#word\"",
                                  "414243",
                                  "41424",
                                  "NULL",
                                  "any",
                                  "ext:name",
                                  "DE",
                                  "D",
                                  "de",
                                  "[HT40+]",
                                  "[SHORT-GI-20][HT40-]",
                                  "[JUNK]",
                                  "push_button",
                                  ("K\xc3\xbc"
                                   "che"),
                                  "a=b",
                                  "a # b",
                                  "2-5"};

class generator {
public:
    generator(const checked_daemon& daemon, unsigned seed) : daemon_(daemon), random_(seed) {}

private:
    int pick(int low, int high) { return std::uniform_int_distribution<>(low, high)(random_); }

    template <typename List>
    auto& choose(List& from) {
        return *(std::begin(from) + pick(0, static_cast<int>(std::size(from)) - 1));
    }

public:
    std::string make() {
        lines file = choose(daemon_.samples);
        for (int changes = pick(0, 4); changes > 0; --changes) {
            lines changed = file;
            change(changed);
            if (is_judged(changed))
                file = changed;
        }
        return join(file) + daemon_.planted + "\n";
    }

private:
    std::string value() {
        const auto repeated = [](int count, char letter) {
            std::string text(static_cast<std::size_t>(count), letter);
            return text;
        };
        switch (pick(0, 7)) {
        case 0: // about where lengths end
            return repeated(pick(0, 1) * 32 + pick(0, 34), 'x');
        case 1:
            return repeated(pick(62, 66), pick(0, 1) == 0 ? 'a' : 'z');
        case 2:
            return "\"" + repeated(pick(0, 66), 'k') + "\"";
        default:
            return choose(values);
        }
    }

    char separator() const { return daemon_.planted[0] == 's' ? ' ' : '='; }

    void change(lines& file) {
        std::string& line = choose(file);
        const std::size_t end = std::min(line.find_first_of("= \t"), line.size());
        switch (pick(0, 11)) {
        case 0:
        case 1:
        case 2: // another value
            line = line.substr(0, end) + separator() + value();
            break;
        case 3:
        case 4:
        case 5: { // another key
            const std::vector<std::string> keys = split_words(daemon_.keys);
            file.insert(file.begin() + pick(0, static_cast<int>(file.size())),
                        (pick(0, 1) == 0 ? "" : "\t") + choose(keys) + separator() + value());
            break;
        }
        case 6: // a key that nobody knows
            line.insert(static_cast<std::size_t>(pick(0, static_cast<int>(end))), 1, choose(odd_));
            break;
        case 7: // a line that is no setting
            line.resize(end);
            break;
        case 8:
            line.clear();
            break;
        case 9: { // twice, perhaps elsewhere
            const std::string copy = line;
            file.insert(file.begin() + pick(0, static_cast<int>(file.size())), copy);
            break;
        }
        case 10:
            line.insert(static_cast<std::size_t>(pick(0, static_cast<int>(line.size()))), 1, choose(odd_));
            break;
        default:
            std::swap(line, choose(file));
        }
    }

    /// Whether all its keys are such that the model judges their values.
    bool is_judged(const lines& file) const {
        return std::none_of(file.begin(), file.end(), [&](const std::string& line) {
            const std::size_t start = std::min(line.find_first_not_of(" \t\r"), line.size());
            const std::string key = line.substr(start, line.find('=') - start);
            return daemon_.is_unjudged(key) || key.rfind("blob-base64-", 0) == 0 || key == "cred";
        });
    }

    const checked_daemon& daemon_;
    std::mt19937 random_;
    const std::string odd_ = " \t#\"=}x1-_:";
};

/// The library's own files, which it writes for the camera's own and for a joined network.
std::vector<lines> hostapd_samples() {
    const lines head = {
        "ctrl_interface=/var/run/hostapd", "interface=wlan1", "ssid=Camera", "channel=6", "wps_state=0", "auth_algs=1"};
    const lines tail = {"driver=nl80211", "beacon_int=100", "hw_mode=g",
                        "ieee80211n=1",   "wme_enabled=1",  "ht_capab=[SHORT-GI-20][SHORT-GI-40][HT40+]",
                        "max_num_sta=8"};
    std::vector<lines> samples;
    for (const lines& security : {lines{}, lines{"wpa=1", "wpa_pairwise=TKIP"}, lines{"wpa=2", "rsn_pairwise=CCMP"},
                                  lines{"wpa=3", "wpa_pairwise=TKIP CCMP"}}) {
        lines file = head;
        file.insert(file.end(), security.begin(), security.end());
        if (!security.empty())
            file.insert(file.end(), {"wpa_passphrase=passphrase", "wpa_key_mgmt=WPA-PSK", "wpa_group_rekey=86400"});
        file.insert(file.end(), tail.begin(), tail.end());
        samples.push_back(file);
    }
    lines adapter = samples[2];
    std::replace(adapter.begin(), adapter.end(), std::string("driver=nl80211"), std::string("driver=rtl871xdrv"));
    samples.push_back(adapter);
    return samples;
}

std::vector<lines> supplicant_samples() {
    const lines head = {"ctrl_interface=/var/run/wpa_supplicant",
                        "device_type=4-0050F204-3",
                        "model_name=Dome 2",
                        "manufacturer=Example Cameras",
                        "os_version=01020300",
                        "config_methods=push_button virtual_push_button",
                        "eapol_version=1",
                        "network={",
                        "\tscan_ssid=1",
                        "\tauth_alg=OPEN",
                        "\tssid=\"Office\""};
    std::vector<lines> samples;
    for (const lines& security :
         {lines{"\tkey_mgmt=NONE"}, lines{"\tkey_mgmt=WPA-PSK", "\tproto=WPA", "\tpsk=\"passphrase\""},
          lines{"\tkey_mgmt=WPA-PSK", "\tproto=RSN", "\tpsk=" + std::string(64, 'a')},
          lines{"\tpairwise=CCMP TKIP", "\tgroup=TKIP", "\tbssid=00:11:22:33:44:55"}}) {
        lines file = head;
        file.insert(file.end(), security.begin(), security.end());
        file.emplace_back("}");
        samples.push_back(file);
    }
    samples.push_back({"country=DE", "update_config=0", "# two networks", "network={", "  ssid=\"a # b\" # note",
                       "  key_mgmt=NONE", "}", "network={", "  ssid=414243", "  psk=\"passphrase\"", "}"});
    return samples;
}

std::vector<lines> udhcpd_samples() {
    return {{"start\t\t192.168.8.100", "end\t\t192.168.8.200", "interface\t\twlan1", "option subnet\t255.255.255.0",
             "opt router\t\t192.168.8.1", "opt dns\t\t192.168.8.1"},
            {"# options of all forms", "opt dns 192.168.8.1 192.168.8.2, 1.1.1.1", "opt lease 864000",
             "opt hostname camera # note", "opt timezone -3600", "opt routes 10.0.0.0 10.1.1.1", "opt mtu 0x5dc",
             "opt staticroutes 10.0.0.0/8 10.127.0.1, 10.11.12.0/24 10.11.12.1", "opt 0x08 01020304",
             "static_lease 00:60:08:11:CE:4E 192.168.8.54", "max_leases 100", "siaddr 192.168.8.22"}};
}

template <std::size_t size>
void append_keys(std::string& keys, const bounded_keys (&groups)[size]) {
    for (const bounded_keys& group : groups)
        keys.append(group.keys).append(" ");
}

std::string supplicant_keys() {
    std::string keys = "country device_type os_version uuid bssid group pairwise psk auth_alg key_mgmt proto ";
    append_keys(keys, global_numbers);
    append_keys(keys, global_texts);
    append_keys(keys, network_numbers);
    append_keys(keys, network_texts);
    return keys;
}

/// The judged keys as often as all the lenient ones.
std::string hostapd_keys() {
    std::string keys(lenient_hostapd_keys);
    for (int often = 0; often < 6; ++often)
        keys.append(" ").append(judged_hostapd_keys());
    return keys;
}

constexpr const char* udhcpd_keys =
    "start end interface max_leases auto_time decline_time conflict_time offer_time min_lease lease_file siaddr option "
    "opt notify_file sname boot_file static_lease pidfile remaining";

// What is compared ----------------------------------------------------------------------------------

struct count {
    int files = 0;
    int refused = 0;
    int disagreements = 0;
};

void show(const char* who, const answer& said) {
    std::printf("  %s:\n", who);
    for (const std::string& message : said.messages)
        std::printf("    %s\n", message.c_str());
    if (!said.errors.empty())
        std::printf("    %s errors\n", said.errors.c_str());
}

void compare_files(const checked_daemon& daemon, unsigned seed, int files, const std::string& path, count& count) {
    generator generator(daemon, seed);
    for (; count.files < files; ++count.files) {
        const std::string text = generator.make();
        std::ofstream(path) << text;
        const answer real = ask_real(daemon, path);
        const answer model = daemon.model(text, path);
        if (real.messages.size() > daemon.planted_messages || (!real.errors.empty() && real.errors != "1"))
            ++count.refused;
        if (real == model)
            continue;
        ++count.disagreements;
        std::printf("%s does not agree about this file:\n%s", daemon.name, text.c_str());
        show("it says", real);
        show("the model says", model);
    }
}

/// Every word that could be the name of a key: the program's texts, and their ends, since linkers let
/// one text end in another.
std::set<std::string> names_in(const std::string& program) {
    std::ifstream file(program, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::set<std::string> names;
    std::string word;
    for (const char c : bytes) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_') {
            word += c;
            continue;
        }
        for (std::size_t start = 0; c == '\0' && word.size() > start + 1;) {
            names.insert(word.substr(start));
            start = word.find('_', start) + 1;
            if (start == 0)
                break;
        }
        word.clear();
    }
    return names;
}

/// The names that an answer calls unknown.
std::set<std::string> unknown_names(const answer& said) {
    std::set<std::string> names;
    for (const std::string& message : said.messages) {
        const std::size_t start = message.find('\'') + 1;
        if (message.find("unknown ") != std::string::npos && start != 0)
            names.insert(message.substr(start, message.find_first_of("='", start) - start));
    }
    return names;
}

/// Asks both for every name in the daemon's own program.
/// @param before, after what stands around the names.
int compare_names(const checked_daemon& daemon, const std::string& path, const std::string& before,
                  const std::string& after) {
    const lines found = output_of(std::string("sh -c 'command -v ") + daemon.name + "'");
    std::string text = before;
    for (const std::string& name : names_in(found.empty() ? "" : found[0])) {
        if (!daemon.is_unjudged(name))
            text += name + "=1\n";
    }
    text += after + daemon.planted + "\n";
    std::ofstream(path) << text;
    const auto real = unknown_names(ask_real(daemon, path));
    const auto model = unknown_names(daemon.model(text, path));
    lines differing;
    std::set_symmetric_difference(real.begin(), real.end(), model.begin(), model.end(), std::back_inserter(differing));
    for (const std::string& name : differing)
        std::printf("%s does not agree about the key %s\n", daemon.name, name.c_str());
    std::printf("%-14s %6zu names, %zu keys in doubt\n", daemon.name, split_lines(text).size(), differing.size());
    return static_cast<int>(differing.size());
}

/// Values at the bounds of numbers and of lengths.
lines bounds() {
    std::set<long> numbers;
    const auto add = [&](const auto& groups) {
        for (const bounded_keys& group : groups)
            numbers.insert({group.low - 1, group.low, group.high, group.high + 1});
    };
    add(global_numbers);
    add(network_numbers);
    for (const long of_hostapd : {2L, 10L, 13L, 20L, 100L, 255L, 256L, 2007L, 2346L, 65535L})
        numbers.insert({of_hostapd - 1, of_hostapd, of_hostapd + 1});
    lines all;
    for (const long number : numbers)
        all.push_back(std::to_string(number));
    for (std::size_t length = 0; length < 70; ++length) {
        all.emplace_back(length, 'a');
        all.push_back('"' + std::string(length, 'k') + '"');
    }
    return all;
}

/// What may stand before a value: every key, and of udhcpd every option, whose names it tells.
std::set<std::string> value_heads(const checked_daemon& daemon) {
    std::set<std::string> heads;
    if (daemon.planted[0] == 's') {
        const std::string known = read_udhcpd_settings("opt ?\n", "").messages.at(0);
        for (const std::string& name : split_words(known.substr(known.rfind(": ") + 1)))
            heads.insert("opt " + name + " ");
    }
    for (const std::string& key : split_words(daemon.keys)) {
        if (!daemon.is_unjudged(key))
            heads.insert(key + (daemon.planted[0] == 's' ? " " : "="));
    }
    return heads;
}

/// Gives every judged key every value, all in one file.
/// @param before, after what stands around the lines.
int compare_values(const checked_daemon& daemon, const std::string& path, const std::string& before,
                   const std::string& after) {
    lines all = bounds();
    all.insert(all.end(), std::begin(values), std::end(values));
    std::string text = before;
    for (const std::string& head : value_heads(daemon)) {
        const bool is_option = head == "opt " || head == "option "; // would end it at the first unknown name
        for (const std::string& value : is_option ? lines{} : all)
            text += head + value + "\n";
    }
    text += after + daemon.planted + "\n";
    std::ofstream(path) << text;
    const lines real = ask_real(daemon, path).messages;
    const lines model = daemon.model(text, path).messages;
    const auto [said, modelled] = std::mismatch(real.begin(), real.end(), model.begin(), model.end());
    const bool agree = said == real.end() && modelled == model.end();
    if (!agree) {
        std::printf("%s does not agree about a value: it says\n    %s\nthe model says\n    %s\n", daemon.name,
                    said == real.end() ? "-" : said->c_str(), modelled == model.end() ? "-" : modelled->c_str());
    }
    std::printf("%-14s %6zu values, %zu messages%s\n", daemon.name, split_lines(text).size(), real.size(),
                agree ? "" : ", which differ");
    return agree ? 0 : 1;
}

const checked_daemon daemons[] = {
    {"hostapd", "hostapd", "planted", 1, hostapd_samples(), hostapd_keys(), ask_hostapd, is_unjudged_hostapd_key},
    {"wpa_supplicant", "wpa_supplicant -i none0 -c", "planted", 2, supplicant_samples(), supplicant_keys(),
     ask_supplicant, is_unjudged_in_supplicant},
    {"udhcpd", "busybox udhcpd -f", "start 2.2.2.2\nend 1.1.1.1", 1, udhcpd_samples(), udhcpd_keys, ask_udhcpd,
     [](const std::string& /*key*/) { return false; }},
};

int check(unsigned seed, int files, const std::string& folder) {
    int disagreements = 0;
    for (const checked_daemon& daemon : daemons) {
        count count;
        compare_files(daemon, seed, files, folder + "/" + daemon.name + ".conf", count);
        std::printf("%-14s %6d files, %d refused, %d disagreements\n", daemon.name, count.files, count.refused,
                    count.disagreements);
        disagreements += count.disagreements;
    }
    const std::string path = folder + "/all.conf";
    disagreements += compare_values(daemons[0], path, "", "");
    disagreements += compare_values(daemons[1], path, "", "");
    disagreements += compare_values(daemons[1], path, "network={\n", "}\n");
    disagreements += compare_values(daemons[2], path, "", "");
    disagreements += compare_names(daemons[0], path, "", "");
    disagreements += compare_names(daemons[1], path, "", "");
    disagreements += compare_names(daemons[1], path, "network={\n", "}\n");
    return disagreements == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    unsigned seed = 1;
    int files = 200;
    for (int i = 1; i < argc; i += 2) {
        const std::string option = argv[i];
        if (i + 1 == argc || (option != "--seed" && option != "--count")) {
            std::fprintf(stderr, "usage: daemon_check [--seed N] [--count N]\n");
            return 2;
        }
        const unsigned long number = std::strtoul(argv[i + 1], nullptr, 10);
        if (option == "--seed") {
            seed = static_cast<unsigned>(number);
        } else {
            files = static_cast<int>(number);
        }
    }
    if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        std::perror("daemon_check: no network namespace of its own");
    std::string folder = fs::temp_directory_path() / "daemon_check.XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) {
        std::perror("daemon_check: mkdtemp");
        return 1;
    }
    const int status = check(seed, files, folder);
    fs::remove_all(folder);
    return status;
}
