#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>

#include <sys/ioctl.h>
#include <unistd.h>

#include "libwlan/wext.h"
#include "realtek/log.h"
#include "realtek/scan_conversion.h"
#include "util/descriptor.h"
#include "util/site_orders.h"
#include "util/wireless_request.h"

namespace {

constexpr const char* in_do_site_survey = "do_site_survey";

constexpr char station_interface[] = "wlan0";
constexpr int tries = 5;
constexpr useconds_t pause_between_tries = 5000;

constexpr std::size_t range_size = 1136; // more than any driver's range record
constexpr std::size_t maximum_quality_offset = 44;
static_assert(offsetof(iw_range, max_qual) == maximum_quality_offset);

struct close_file {
    void operator()(FILE* file) const { std::fclose(file); }
};

void print_list(FILE* log, const std::vector<sites>& list) {
    log_to(log, "%s[%d] Print %d APs\n", in_do_site_survey, 1119, static_cast<int>(list.size()));
    int number = 0;
    for (const sites& site : list)
        log_to(log, "i=%2d [%.36s], [%.20s], [%.12s], [%.20s], [%d] [%d]\n", ++number, site.ssid,
               site.bssid, site.encryption, site.authentication, site.channel, site.signal);
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
        log_to(log, "%s[%d] ap_num=%d\n", in_do_site_survey, 1105, count);
        if (count >= 0 || failures == tries)
            return count;
    }
}

} // namespace

int wext::get_scan_results(FILE* /*log*/, const char* ifname, int count, int* accepted,
                           scan_result_t* results, WIRELESS_MODE filter, std::vector<sites>& list) {
    *accepted = 0;
    const descriptor control(socket(AF_INET, SOCK_DGRAM, 0));
    if (control.number() < 0) {
        std::perror("wext::get_scan_results() socket:");
        return -1;
    }
    unsigned char range[range_size]{};
    iwreq request = named_request(ifname);
    request.ifr_name[sizeof request.ifr_name - 1] = '\0';
    request.u.data.pointer = range;
    request.u.data.length = sizeof range;
    if (ioctl(control.number(), SIOCGIWRANGE, &request) < 0) {
        std::perror("wext::get_scan_results() ioctl:");
        return -1;
    }
    *accepted = convert_scan_results(results, count, range[maximum_quality_offset], filter, list);
    return 0;
}

int wext::do_site_survey(std::vector<sites>& list) {
    const std::unique_ptr<FILE, close_file> console_log(std::fopen("/dev/console", "w+"));
    FILE* log = console_log.get();
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
        log_to(log, "%s[%d] get_scan_results() < 0\n", in_do_site_survey, 1113);
        return -1;
    }
    sort_sites(list, compare_by_ssid);
    print_list(log, list);
    log_to(log, "%s[%d] Done\n", in_do_site_survey, 1123);
    return 0;
}
