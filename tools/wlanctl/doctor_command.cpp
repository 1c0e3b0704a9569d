// SPDX-License-Identifier: MIT
// wlanctl doctor.

#include <string>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "libwlan/modes.h"
#include "libwlan/store.h"

#include "adapter.h"
#include "commands.h"
#include "daemon_checks.h"
#include "display.h"
#include "escape.h"
#include "layout.h"
#include "programs.h"

namespace {

enum families { both, mediatek, realtek };

struct need {
    const char* what; ///< a program in PATH, or a path
    families family;
    int access;         ///< as access() takes it
    const char* names;  ///< text that must stand in its file, since it cannot be asked; else null
    const char* breaks; ///< without it
};

constexpr need needs[] = {
    // what, family, access, names, breaks
    {"/bin/sh", both, X_OK, nullptr, "no program can be run"},
    {"/tmp", both, W_OK | X_OK, nullptr, "no daemon gets a configuration, and none can be stopped"},
    {"/dev/console", both, W_OK, nullptr, "no traces, and no account of a Realtek survey"},
    {"ifconfig", both, X_OK, nullptr,
     "the access point gets no address; a lowered interface is not surveyed"},
    {"ifdown", both, X_OK, nullptr, "stopping the access point skips the image's own clean-up"},
    {"mii_mgr", both, X_OK, nullptr, "the wired link always counts as down"},
    {"udhcpd", both, X_OK, "/tmp/udhcpd.conf", "who joins the access point gets no address"},
    {"udhcpd", both, X_OK, "/tmp/udhcpd.pid", "an old DHCP server is never stopped"},
    {"iwpriv", mediatek, X_OK, nullptr, "no fresh survey: the driver lists what it heard before"},
    {"iwgetid", mediatek, X_OK, nullptr, "WPS stores its network with channel 0"},
    {"/etc/rc.d/init.d/network.sh", mediatek, X_OK, nullptr,
     "after WPS nothing joins the network that it stored"},
    {"wpa_supplicant", realtek, X_OK, nullptr, "no station"},
    {"hostapd", realtek, X_OK, "rtl871xdrv", "no access point"},
    {"/var/run", realtek, W_OK | X_OK, nullptr, "hostapd and wpa_supplicant do not start"},
};

/// @return where the shell would find it; empty when it would not.
std::string find(const need& need) {
    if (need.what[0] == '/')
        return access(need.what, need.access) == 0 ? need.what : "";
    return find_program(need.what, need.access);
}

answer examine(const need& need) {
    const std::string found = find(need);
    if (found.empty())
        return checked(need.what, nullptr, need.breaks);
    if (need.names != nullptr && !file_names(found, need.names)) {
        return checked(need.what, found,
                       std::string(need.breaks) + " (does not know " + need.names + ")");
    }
    return checked(need.what, found, nullptr);
}

/// The kernel's list of USB devices, or the tool that prints one.
answer examine_usb() {
    constexpr need list{"/proc/bus/usb/devices", both, R_OK, nullptr, nullptr};
    constexpr need tool{"lsusb", both, X_OK, nullptr, "every adapter is taken for a Realtek one"};
    return examine(find(list).empty() ? tool : list);
}

answer examine_adapter() {
    try {
        find_adapter();
        return checked("adapter", "yes", nullptr);
    } catch (const failure& failure) {
        return checked("adapter", nullptr, failure.what());
    }
}

/// Through the functions of whichever store the image has; its own message tells why it fails.
answer examine_store() {
    constexpr char what[] = "stored settings";
    _wireless_setting settings{};
    const bool read = cam_get_ap(&settings) == 0 && cam_get_client(&settings) == 0;
    return read ? checked(what, "yes", nullptr)
                : checked(what, nullptr, "no stored modes, and WPS stores nothing");
}

/// The one file that must not be there.
answer examine_debug_level() {
    constexpr char file[] = "/tmp/debug_level";
    return access(file, F_OK) != 0 ? checked(file, nullptr, nullptr)
                                   : checked(file, file, "traces show keys on the console");
}

/// A second look at a program tells something new only when the program is there and lacks more.
void add(answer& checks, const answer& check) {
    const bool lacks_more = !check.at("found").is_null() && !check.at("breaks").is_null();
    const answer& last = checks.fields().back().value;
    if (lacks_more || check.at("what").text() != last.at("what").text())
        checks.push_back(check);
}

void add_wrapped(std::string& text, const std::string& words, const std::string& indent) {
    const std::size_t columns = answer_display().columns;
    const std::size_t room = columns == 0 ? 100 : columns;
    for (const std::string& line : wrapped(words, room - indent.size()))
        text += indent + line + "\n";
}

/// A row in one line: a program's path says no more than its name.
std::string summary_of(const answer& check) {
    const std::string what = check.at("what").text();
    const std::string found = check.at("found").text();
    if (check.at("found").is_null())
        return check.at("breaks").is_null() ? "no " + what : what + ": missing";
    const bool is_path = found == what || find_program(what, X_OK) == found;
    return is_path || found == "yes" ? what : what + ": " + found;
}

/// What breaks comes first, and all that is well in one paragraph.
std::string drawn(const answer& told) {
    std::string text;
    std::string well;
    for (const auto& [unnamed, check] : told.at("checks").fields()) {
        const std::string summary = escape(summary_of(check));
        if (check.at("breaks").is_null()) {
            well += (well.empty() ? "" : "; ") + summary;
        } else {
            add_wrapped(text, summary, "");
            add_wrapped(text, escape(check.at("breaks").text()), "  ");
        }
    }
    text += text.empty() ? "" : "\n";
    add_wrapped(text, "All is well with: " + well + ".", "");
    return text;
}

answer examine_camera() {
    const families family = isMtkWifi() == 1 ? mediatek : realtek;
    answer checks = answer::list(
        {examine_usb(), examine_adapter(),
         checked("root", geteuid() == 0 ? answer("yes") : answer(), // the driver obeys nobody else
                 geteuid() == 0 ? answer()
                                : answer("the driver and the kernel refuse every change")),
         examine_store(), examine_debug_level()});
    for (const need& need : needs) {
        if (need.family == both || need.family == family)
            add(checks, examine(need));
    }
    if (family == realtek) {
        for (const answer& check : check_daemons())
            checks.push_back(check);
    }
    for (const answer& check : check_descriptors())
        checks.push_back(check);
    int missing = 0;
    for (const auto& [unnamed, check] : checks.fields())
        missing += check.at("breaks").is_null() ? 0 : 1;
    answer told = {{"family", family == mediatek ? "mediatek" : "realtek"},
                   {"missing", missing},
                   {"checks", checks}};
    told.draw(drawn(told));
    if (missing > 0) {
        throw failure("the camera is not as the library needs it: " + std::to_string(missing) +
                          " of " + std::to_string(checks.fields().size()) + " checks",
                      "put right in the image what breaks something", told);
    }
    return told;
}

} // namespace

void add_doctor_command(CLI::App& wlanctl, answer& result) {
    wlanctl.add_subcommand("doctor", "Check that the camera has what the library needs")
        ->footer(
            "Looks, and changes nothing: programs in PATH, files, permissions, stored settings, "
            "no /tmp/debug_level;\nonly what the plugged-in adapter needs. Of what runs: whether "
            "control sockets answer, whether hostapd\nknows its driver and takes 40 MHz on its "
            "channel (Realtek), and how many descriptors the daemons and\nprograms with "
            "libwlan.so use. With --json: family, missing, checks [what, found, breaks];\nbreaks "
            "is "
            "null where all is well.")
        ->callback([&result] { result = examine_camera(); });
}
