#include <cstdio>
#include <cstdlib>

#include <unistd.h>

#include "libwlan/link_status.h"
#include "libwlan/wlan.h"
#include "mtk/ask_driver.h"
#include "mtk/interfaces.h"
#include "util/driver_requests.h"

namespace {

constexpr unsigned short table_size = 8192; // the most that the driver gives
constexpr useconds_t scan_time = 4000000;

char trigger_command[] = "SiteSurvey=1";

/// The driver's table, with one byte more than the driver is told of, so that a full table still
/// ends.
struct table_buffer {
    char* text = static_cast<char*>(std::calloc(1, table_size + 1));
    table_buffer() = default;
    table_buffer(const table_buffer&) = delete;
    table_buffer& operator=(const table_buffer&) = delete;
    ~table_buffer() { std::free(text); }
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
    const table_buffer table;
    if (table.text == nullptr) {
        std::perror("calloc");
        return 0;
    }
    if (trigger && !scan(radio))
        return 0;
    if (!fetch_table(radio, table.text))
        return 0;
    const int result = radio.parse_site_survey(list, table.text);
    if (raised)
        radio.ifconfig(interface, ifconfig_down);
    return result;
}

} // namespace

int wlan::do_site_survey(std::vector<sites>& list, bool trigger) {
    // A failed trigger or table still answers 0: callers learn of it from an empty list.
    const int result = survey_on(*this, access_point_interface, list, trigger);
    store_ap_list(list);
    return result;
}
