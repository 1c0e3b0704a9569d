// SPDX-License-Identifier: MIT
// The survey of a MediaTek/Ralink adapter: the driver's table, the list of it and the list's file.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <unistd.h>

#include "base/message.h"
#include "base/text.h"
#include "base/unique_file.h"
#include "libwlan/link_status.h"
#include "libwlan/wlan.h"
#include "mtk/driver.h"
#include "mtk/interfaces.h"
#include "mtk/survey_table.h"
#include "sites.h"

using namespace libwlan;
using namespace libwlan::mtk;

namespace {

constexpr char ap_list_path[] = "/tmp/ap_list";
constexpr unsigned short table_size = 8192; // the most that the driver gives
constexpr useconds_t scan_time = 4000000;

char trigger_command[] = "SiteSurvey=1";

struct memory_releaser {
    void operator()(char* memory) const { std::free(memory); }
};

/// Has the driver scan, and waits for it.
bool scan(wlan& radio) {
    if (radio.command_set_private(trigger_command) < 0) {
        std::perror("SiteSurvey");
        return false;
    }
    usleep(scan_time);
    return true;
}

bool fetch_table(wlan& radio, char* text) {
    if (ask_driver(radio, driver_survey, radio.ifname, text, table_size) < 0) {
        std::perror("RTPRIV_IOCTL_GSITESURVEY");
        return false;
    }
    return true;
}

/// Surveys on one interface. An interface that had to be raised is lowered again, but not after a
/// failure.
/// @return 0, also after a failure; -1 when a line of the table was rejected.
int survey_on(wlan& radio, char* interface, std::vector<sites>& list, bool trigger) {
    const bool raised = does_if_exist(interface) == 0;
    if (raised)
        radio.ifconfig(interface, ifconfig_up);
    radio.set_interface(interface);
    // One byte more than the driver is told of, so that a full table still ends.
    const std::unique_ptr<char, memory_releaser> table(
        static_cast<char*>(std::calloc(1, table_size + 1)));
    if (table == nullptr) {
        std::perror("calloc");
        return 0;
    }
    if (trigger && !scan(radio))
        return 0;
    if (!fetch_table(radio, table.get()))
        return 0;
    const int result = radio.parse_site_survey(list, table.get());
    if (raised)
        radio.ifconfig(interface, ifconfig_down);
    return result;
}

void print_row(const sites& site, const char* name) {
    std::fprintf(stderr, "%-4d%-8d%-36.36s%-20.20s%-12.12s%-20.20s%-12.12s\n", site.channel,
                 site.rssi, name, site.bssid, site.encryption, site.authentication,
                 site.network_type);
}

/// Lists an access point once by name. A stronger one replaces the one listed, and goes to the end.
/// @return whether `site` entered the list.
bool list_once(std::vector<sites>& list, const sites& site) {
    const auto listed = find_name(list, site.ssid);
    if (listed != list.end()) {
        if (listed->signal >= site.signal)
            return false;
        list.erase(listed);
    }
    list.push_back(site);
    return true;
}

int list_row(const wlan& radio, std::vector<sites>& list, std::string_view line) {
    sites site{};
    if (!read_row(line, site))
        return -1;
    if (radio.debug_level != 0)
        print_row(site, site.ssid);
    list.push_back(site);
    return 0;
}

int list_row_v2(const wlan& radio, std::vector<sites>& list, std::string_view line) {
    sites site{};
    if (!read_row_v2(line, site))
        return -1;
    if (std::strcmp(site.network_type, "In") != 0) {
        print_message(stderr, "parse_element_v2[733] Network type = [%s], not Infrastruce.\n",
                      site.network_type);
        return -1;
    }
    std::memcpy(site.network_type, "Infra", sizeof "Infra");
    if (radio.debug_level != 0) {
        char quoted[35];
        cut_text(quoted, sizeof quoted, "\"%.36s\"", site.ssid);
        print_row(site, quoted);
    }
    return list_once(list, site) ? 0 : -1;
}

} // namespace

int wlan::do_site_survey(std::vector<sites>& list, bool trigger) {
    // Part of the interface: a failed trigger or table still answers 0.
    const int result = survey_on(*this, access_point_interface, list, trigger);
    store_ap_list(list);
    return result;
}

int wlan::parse_site_survey(std::vector<sites>& list, char* text) {
    if (text == nullptr)
        return -1;
    int result = 0;
    std::string_view table = text;
    if (is_version_2_header(take_line(table).value_or("")))
        site_survey_v2 = 1;
    while (const std::optional<std::string_view> line = take_line(table)) {
        const std::string_view row = trimmed(*line);
        result |= site_survey_v2 != 0 ? list_row_v2(*this, list, row) : list_row(*this, list, row);
    }
    if (site_survey_v2 != 0)
        sort_by_signal(list);
    return result;
}

int wlan::parse_element(std::vector<sites>& list, std::string line) {
    trim(line);
    return list_row(*this, list, line);
}

int wlan::parse_element_v2(std::vector<sites>& list, std::string line) {
    trim(line);
    return list_row_v2(*this, list, line);
}

void wlan::trim(std::string& text) {
    text.assign(trimmed(text));
}

void wlan::trimForSSID(std::string& text) {
    // Without a closing quote the length covers the rest.
    text.assign(text, 1, text.rfind('"') - 1);
}

void wlan::store_ap_list(std::vector<sites>& list) {
    const unique_file file = open_file(ap_list_path, "w+");
    if (file == nullptr) {
        std::perror("Open /tmp/ap_list fail");
        return;
    }
    for (const sites& site : list) {
        char quoted[64];
        cut_text(quoted, sizeof quoted, "\"%.36s\"", site.ssid);
        std::fprintf(file.get(), "%-3d %17.20s %-32s\n", site.channel, site.bssid, quoted);
    }
}
