// SPDX-License-Identifier: MIT
// wlanctl status.

#include <CLI/CLI.hpp>

#include "libwlan/files.h"
#include "libwlan/link_status.h"

#include "adapter.h"
#include "commands.h"
#include "daemons.h"

namespace {

/// Drivers tell a channel by its number or by its frequency in MHz.
int channel_number(int told) {
    constexpr int least_mhz = 1000;
    constexpr int channel_14 = 2484; // MHz, as the others
    constexpr int before_channel_1 = 2407;
    constexpr int before_5ghz = 5000;
    if (told < least_mhz)
        return told;
    if (told == channel_14)
        return 14;
    return (told - (told < before_5ghz ? before_channel_1 : before_5ghz)) / 5;
}

answer interfaces_of(const adapter& found) {
    answer list = answer::list();
    for (const wifi_interface& interface : found.interfaces) {
        answer associated;
        answer channel;
        if (interface.station) {
            const bool joined =
                interface.state == "up" && does_wifi_associated(interface.name) == 1;
            associated = joined;
            channel = joined ? answer(channel_number(get_wifi_channel(interface.name))) : answer();
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
                            {"present", exist(daemon.pid_file) == 1}});
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

answer status() {
    const adapter found = find_adapter();
    answer told = {{"family", found.mediatek ? "mediatek" : "realtek"},
                   {"wired_link", probe_link() == 1 ? "up" : "down"},
                   {"interfaces", interfaces_of(found)},
                   {"daemons", daemons_of(found)}};
    if (found.mediatek)
        told.set("radio", radio_figures());
    return told;
}

} // namespace

void add_status_command(CLI::App& wlanctl, answer& result) {
    wlanctl.add_subcommand("status", "Tell how interfaces, links, daemons and radio are")
        ->footer("With --json: family, wired_link, interfaces [name, role, state, associated, "
                 "channel],\n"
                 "daemons [name, pid_file, present]; on MediaTek radio {level_dbm, noise_dbm, "
                 "oid_...}.\n"
                 "What does not apply or could not be asked is null.")
        ->callback([&result] { result = status(); });
}
