// SPDX-License-Identifier: MIT
// The Wi-Fi part of a camera's status page, as JSON on standard output.

#include <cstdio>
#include <string>

#include <unistd.h>

#include <libwlan/libwlan.h>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

struct wifi_interface {
    const char* name;
    bool station;
};

constexpr wifi_interface mediatek[] = {{"ra0", false}, {"wlan0", true}, {"apclii0", true}};
constexpr wifi_interface realtek[] = {{"wlan0", true}, {"wlan1", false}};

/// Drivers tell a channel by its number or by its frequency in MHz: 2412 is channel 1.
int channel_number(int told) {
    if (told < 1000)
        return told;
    return told == 2484 ? 14 : (told - (told < 5000 ? 2407 : 5000)) / 5;
}

json describe(const wifi_interface& interface) {
    json told = {{"name", interface.name}, {"up", does_ifup(interface.name) == 1}};
    if (!interface.station)
        return told;
    told["joined"] = does_wifi_associated(interface.name) == 1;
    if (told["joined"] == true)
        told["channel"] = channel_number(get_wifi_channel(interface.name));
    return told;
}

template <std::size_t count>
json describe(const wifi_interface (&interfaces)[count]) {
    json list = json::array();
    for (const wifi_interface& interface : interfaces)
        list.push_back(describe(interface));
    return list;
}

json status() {
    if (isMtkWifi() == 0)
        return {{"adapter", "realtek"}, {"interfaces", describe(realtek)}};
    json told = {{"adapter", "mediatek"}, {"interfaces", describe(mediatek)}};
    WIFI_INFO figures{};
    if (get_wifi_info(figures) == 0)
        told["level_dbm"] = figures.level;
    return told;
}

} // namespace

int main() {
    // Some calls print what a tool or the driver told them; standard output is the page's alone.
    FILE* const page = fdopen(dup(STDOUT_FILENO), "w");
    if (page == nullptr || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        std::perror("status_page: standard output");
        return 1;
    }
    json told = status();
    told["cable"] = probe_link() == 1;
    std::fputs((told.dump(2) + "\n").c_str(), page);
    return std::fclose(page) == 0 ? 0 : 1;
}
