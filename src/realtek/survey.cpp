// SPDX-License-Identifier: MIT
// The survey of a Realtek adapter.

#include <cstdio>
#include <memory>
#include <new>

#include <unistd.h>

#include "base/message.h"
#include "base/paths.h"
#include "base/unique_file.h"
#include "libwlan/wext.h"
#include "realtek/daemons.h"
#include "sites.h"

using namespace libwlan;

namespace {

constexpr char station_interface[] = REALTEK_STATION;
constexpr int tries = 5;
constexpr useconds_t pause_between_tries = 5000;

void print_list(FILE* log, const std::vector<sites>& list) {
    print_message(log, "do_site_survey[1119] Print %d APs\n", static_cast<int>(list.size()));
    int number = 0;
    for (const sites& site : list) {
        print_message(log, "i=%2d [%.36s], [%.20s], [%.12s], [%.20s], [%d] [%d]\n", ++number,
                      site.ssid, site.bssid, site.encryption, site.authentication, site.channel,
                      site.signal);
    }
}

/// The driver's results, asked for a few times: it may still be busy with an earlier scan.
/// @return how many, or -1.
int fetch_results(wext& radio, FILE* log, scan_result_t* results) {
    for (int failures = 0;;) {
        const int count = radio.driver_get_scan_results(log, station_interface, results);
        if (count < 0) {
            ++failures;
            usleep(pause_between_tries);
        }
        print_message(log, "do_site_survey[1105] ap_num=%d\n", count);
        if (count >= 0 || failures == tries)
            return count;
    }
}

} // namespace

int wext::do_site_survey(std::vector<sites>& list) {
    const unique_file log_file = open_file(path::console, "w+");
    FILE* const log = log_file.get();
    if (driver_scan(log, station_interface) != 0)
        return -1;
    const std::unique_ptr<scan_result_t[]> results(new (std::nothrow)
                                                       scan_result_t[max_scan_results]);
    if (results == nullptr)
        return -1;
    const int count = fetch_results(*this, log, results.get());
    if (count < 0)
        return -1;
    int accepted = 0;
    if (get_scan_results(log, station_interface, count, &accepted, results.get(),
                         WIRELESS_MODE_INFRA, list) != 0) {
        print_message(log, "do_site_survey[1113] get_scan_results() < 0\n");
        return -1;
    }
    sort_by_name(list);
    print_list(log, list);
    print_message(log, "do_site_survey[1123] Done\n");
    return 0;
}
