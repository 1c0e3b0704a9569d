#include "util/site_orders.h"

#include <algorithm>

#include <strings.h>

bool compare_signal(sites a, sites b) {
    return a.signal > b.signal;
}

bool compare_by_ssid(sites a, sites b) {
    return strncasecmp(a.ssid, b.ssid, sizeof a.ssid) < 0;
}

void sort_sites(std::vector<sites>& list, bool (*order)(sites, sites)) {
    std::sort(list.begin(), list.end(),
              [order](const sites& one, const sites& other) { return order(one, other); });
}
