#include "mtk/ask_driver.h"

#include <sys/ioctl.h>

#include "util/wireless_request.h"

int ask_driver(wlan& radio, unsigned long number, const char* ifname, void* data, std::size_t size,
               __u16 flags) {
    radio.request = named_request(ifname);
    radio.request.u.data.pointer = data;
    radio.request.u.data.length = static_cast<__u16>(size);
    radio.request.u.data.flags = flags;
    return ioctl(radio.sock, number, &radio.request);
}
