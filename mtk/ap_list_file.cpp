#include <cstdio>

#include "libwlan/wlan.h"
#include "util/cut_text.h"

void wlan::store_ap_list(std::vector<sites>& list) {
    FILE* file = std::fopen("/tmp/ap_list", "w+");
    if (file == nullptr) {
        std::perror("Open /tmp/ap_list fail");
        return;
    }
    for (const sites& site : list) {
        char quoted[64];
        cut_text(quoted, sizeof quoted, "\"%.36s\"", site.ssid);
        std::fprintf(file, "%-3d %17.20s %-32s\n", site.channel, site.bssid, quoted);
    }
    std::fclose(file);
}
