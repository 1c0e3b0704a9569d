#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

#include "libwlan/link_status.h"
#include "util/driver_requests.h"
#include "util/wireless_request.h"

namespace {

struct figure {
    std::uint16_t query;
    std::int32_t WIFI_INFO::*field;
    std::int32_t when_refused;
};

// In the order in which the driver is asked.
constexpr figure figures[] = {
    {0x0678, &WIFI_INFO::oid_0678, 0},   {0x0679, &WIFI_INFO::oid_0679, 0},
    {0x0108, &WIFI_INFO::oid_0108, -99}, {0x0109, &WIFI_INFO::oid_0109, -99},
    {0x0630, &WIFI_INFO::oid_0630, -99},
};

static_assert(sizeof(iw_statistics) == 32);
static_assert(offsetof(iw_statistics, qual.level) == 3);
static_assert(offsetof(iw_statistics, qual.noise) == 4);

int signed_byte(unsigned char byte) {
    return byte < 0x80 ? byte : byte - 0x100;
}

} // namespace

int get_wifi_info(WIFI_INFO& info) {
    const int sock = socket(AF_INET, SOCK_DGRAM, 0);
    if (sock < 0) {
        std::fprintf(stderr, "[%s]open socket failed.\n", "get_wifi_info");
        return -1;
    }
    iwreq request = named_request("wlan0");
    for (const figure& figure : figures) {
        request.u.data.pointer = &(info.*figure.field);
        request.u.data.length = sizeof(std::int32_t);
        request.u.data.flags = figure.query;
        if (ioctl(sock, driver_query, &request) < 0)
            info.*figure.field = figure.when_refused;
    }
    iw_statistics statistics{};
    request = named_request("ra0");
    request.u.data.pointer = &statistics;
    request.u.data.length = sizeof statistics;
    if (ioctl(sock, SIOCGIWSTATS, &request) < 0) {
        std::fprintf(stderr, "ioctl failed: %s\n", "get_wifi_info");
        return -22; // the socket stays open, as callers have always found it
    }
    info.noise = signed_byte(statistics.qual.noise);
    info.level = signed_byte(statistics.qual.level);
    if (sock < 1)
        return -1;
    close(sock);
    return 0;
}
