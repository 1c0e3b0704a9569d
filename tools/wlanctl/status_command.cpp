// SPDX-License-Identifier: MIT
// wlanctl status.

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "libwlan/files.h"
#include "libwlan/link_status.h"

#include "adapter.h"
#include "commands.h"
#include "daemons.h"
#include "display.h"
#include "escape.h"
#include "layout.h"
#include "link.h"
#include "request_lock.h"
#include "whereabouts.h"

namespace {

answer interfaces_of(const adapter& found) {
    answer list = answer::list();
    for (const wifi_interface& interface : found.interfaces) {
        answer associated;
        answer channel;
        if (interface.station) {
            const link_state link =
                interface.state == "up" ? ask_link(interface.name) : link_state();
            associated = link.associated;
            channel = link.channel > 0 ? answer(link.channel) : answer();
        }
        list.push_back({{"name", interface.name},
                        {"role", interface.role},
                        {"state", interface.state},
                        {"associated", associated},
                        {"channel", channel}});
    }
    return list;
}

answer daemons_of(const adapter& found) {
    answer list = answer::list();
    for (const daemon_process& daemon : {hostapd_daemon, supplicant_daemon, dhcp_daemon}) {
        if (belongs(daemon, found.mediatek)) {
            list.push_back({{"name", daemon.name},
                            {"pid_file", daemon.pid_file},
                            {"present", exist(daemon.pid_file) == 1},
                            {"running", is_running(daemon)}});
        }
    }
    return list;
}

answer radio_figures() {
    WIFI_INFO info{};
    if (get_wifi_info(info) != 0)
        return nullptr;
    return {{"level_dbm", info.level},   {"noise_dbm", info.noise},   {"oid_0108", info.oid_0108},
            {"oid_0109", info.oid_0109}, {"oid_0678", info.oid_0678}, {"oid_0679", info.oid_0679},
            {"oid_0630", info.oid_0630}};
}

/// The rows that people read: what is told, and under it what belongs to it.
using text_rows = std::vector<text_row>;

void add_field(text_rows& rows, const answer& object, const char* name) {
    const answer& value = object.at(name);
    if (!value.is_null())
        rows.push_back({std::string("  ") + name, escape(value.cell())});
}

/// A name that is not told, and one that is none, must not look alike.
std::string name_in(const answer& network) {
    const answer& name = network.at("ssid");
    return name.is_null() ? "(name not told)" : escape(name.text());
}

void add_station(text_rows& rows, const answer& station) {
    if (station.is_null()) {
        rows.push_back({"station", "not joined"});
        return;
    }
    rows.push_back({"station", name_in(station)});
    for (const char* name : {"interface", "address"})
        add_field(rows, station, name);
    if (const int share = signal_share(station); share >= 0) {
        rows.push_back(
            {"  signal", signal_bar(answer_display(), share) + " " + signal_text(station)});
    }
    for (const char* name : {"channel", "security", "bssid"})
        add_field(rows, station, name);
}

void add_access_point(text_rows& rows, const answer& point) {
    if (point.is_null()) {
        rows.push_back({"access point", "not up"});
        return;
    }
    rows.push_back({"access point", name_in(point)});
    for (const char* name : {"interface", "channel"})
        add_field(rows, point, name);
    const answer& stations = point.at("stations");
    if (stations.is_null())
        return;
    rows.push_back({"  stations", stations.at("count").cell()});
    for (const auto& [unnamed, address] : stations.at("addresses").fields())
        rows.push_back({"", address.text()});
}

void add_daemons(text_rows& rows, const answer& daemons) {
    std::string title = "daemons";
    for (const auto& [unnamed, daemon] : daemons.fields()) {
        const bool runs = daemon.at("running").number() != 0;
        const bool left = daemon.at("present").number() != 0;
        rows.push_back({title, daemon.at("name").text() + (runs   ? " runs"
                                                           : left ? " has ended"
                                                                  : " not running")});
        title.clear();
    }
}

std::string drawn(const answer& told) {
    text_rows rows = {{"adapter", told.at("family").text() == "mediatek" ? "MediaTek" : "Realtek"},
                      {"wired link", told.at("wired_link").text()}};
    const answer& request = told.at("request");
    if (!request.is_null()) {
        rows.push_back({"request", "wlanctl " + escape(request.at("command").text()) +
                                       ", process " + request.at("pid").cell()});
    }
    add_station(rows, told.at("station"));
    add_access_point(rows, told.at("access_point"));
    add_daemons(rows, told.at("daemons"));
    const answer& radio = told.at("radio");
    if (!radio.is_null()) {
        rows.push_back({"radio", radio.at("level_dbm").cell() + " dBm, noise " +
                                     radio.at("noise_dbm").cell() + " dBm"});
    }
    return aligned(rows);
}

answer status() {
    const adapter found = find_adapter();
    answer told = {{"family", found.mediatek ? "mediatek" : "realtek"},
                   {"wired_link", probe_link() == 1 ? "up" : "down"},
                   {"interfaces", interfaces_of(found)},
                   {"daemons", daemons_of(found)},
                   {"station", station_of(found)},
                   {"access_point", access_point_of(found)},
                   {"request", running_request()}};
    if (found.mediatek)
        told.set("radio", radio_figures());
    told.draw(drawn(told));
    return told;
}

} // namespace

void add_status_command(CLI::App& wlanctl, answer& result) {
    wlanctl.add_subcommand("status", "Tell where the camera is on the air, and what runs")
        ->footer("With --json: family, wired_link, interfaces [name, role, state, associated, "
                 "channel],\n"
                 "daemons [name, pid_file, present, running], station {interface, ssid, bssid, "
                 "security,\n"
                 "signal_dbm or signal_percent, channel, address}, access_point {interface, ssid, "
                 "channel,\n"
                 "stations {count, addresses}}, request {pid, command}; on MediaTek radio "
                 "{level_dbm,\n"
                 "noise_dbm, oid_...}. What does not apply or could not be asked is null: on "
                 "MediaTek\n"
                 "security and stations.")
        ->callback([&result] { result = status(); });
}
