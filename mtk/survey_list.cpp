#include <cstdio>
#include <cstring>

#include "libwlan/wlan.h"
#include "mtk/survey_table.h"
#include "util/cut_text.h"
#include "util/site_orders.h"

namespace {

void print_row(const sites& site, const char* name) {
    std::fprintf(stderr, "%-4d%-8d%-36.36s%-20.20s%-12.12s%-20.20s%-12.12s\n", site.channel,
                 site.rssi, name, site.bssid, site.encryption, site.authentication,
                 site.network_type);
}

/// Lists an access point once by name. A stronger one replaces the one listed, and goes to the end.
/// @return whether `site` entered the list.
bool list_once(std::vector<sites>& list, const sites& site) {
    for (auto listed = list.begin(); listed != list.end(); ++listed) {
        if (std::strncmp(listed->ssid, site.ssid, sizeof site.ssid) != 0)
            continue;
        if (listed->signal >= site.signal)
            return false;
        list.erase(listed);
        break;
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
        std::fprintf(stderr, "%s[%d] Network type = [%s], not Infrastruce.\n", "parse_element_v2",
                     733, site.network_type);
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
        sort_sites(list, compare_signal);
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
