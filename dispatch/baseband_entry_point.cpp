#include "dispatch/driver_request.h"
#include "libwlan/baseband.h"

int run_set_bbp(char* ifname, char* reg, int value, int mask) {
    wlan radio;
    if (radio.init() != 0)
        return -1;
    return end_request(radio, radio.do_set_bbp(ifname, reg, value, mask));
}
