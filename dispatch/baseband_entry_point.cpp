#include "dispatch/driver_request.h"
#include "libwlan/baseband.h"

int run_set_bbp(char* ifname, char* reg, int value, int mask) {
    return on_mtk([&](wlan& radio) { return radio.do_set_bbp(ifname, reg, value, mask); });
}
