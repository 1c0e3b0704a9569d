// SPDX-License-Identifier: MIT
// The kernel's tables of network interfaces.

#include "vcamera/model/network_tables.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace {

constexpr char dev_head[] =
    "Inter-|   Receive                                                |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs drop "
    "fifo colls carrier compressed\n";
constexpr char dev_line[] = "%6s: %7d %7d %4d %4d %4d %5d %10d %9d %8d %7d %4d %4d %4d %5d %7d "
                            "%10d\n";

constexpr char wireless_head[] =
    "Inter-| sta-|   Quality        |   Discarded packets               | Missed | WE\n"
    " face | tus | link level noise |  nwid  crypt   frag  retry   misc | beacon | 22\n";
constexpr char wireless_line[] = "%6s: %04x  %3d.  %3d.  %3d.  %6d %6d %6d %6d %6d   %6d\n";

} // namespace

void show_network_tables(const camera_state& state, const radio_quality& quality,
                         const std::string& scratch) {
    std::string dev = dev_head;
    std::string wireless = wireless_head;
    for (const short_text& name : state.interfaces) {
        if (name[0] == '\0')
            continue;
        char line[256];
        std::snprintf(line, sizeof line, dev_line, name, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                      0, 0);
        dev += line;
        std::snprintf(line, sizeof line, wireless_line, name, 0, quality.link, quality.level,
                      quality.noise, 0, 0, 0, 0, 0, 0);
        wireless += line;
    }
    std::filesystem::create_directories(scratch + "/proc/net");
    std::ofstream(scratch + "/proc/net/dev") << dev;
    std::ofstream(scratch + "/proc/net/wireless") << wireless;
}
