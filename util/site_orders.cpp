#include "libwlan/sites.h"

#include <strings.h>

bool compare_signal(sites a, sites b) {
    return a.signal > b.signal;
}

bool compare_by_ssid(sites a, sites b) {
    return strncasecmp(a.ssid, b.ssid, sizeof a.ssid) < 0;
}
