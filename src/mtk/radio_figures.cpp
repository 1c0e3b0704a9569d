// SPDX-License-Identifier: MIT
// Radio figures of a MediaTek/Ralink adapter.

#include <cstdint>
#include <cstdio>

#include "base/unique_fd.h"
#include "libwlan/link_status.h"
#include "mtk/driver.h"
#include "mtk/interfaces.h"

using namespace libwlan;
using namespace libwlan::mtk;

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
    unique_fd sock(open_request_socket());
    if (!sock) {
        std::fputs("[get_wifi_info]open socket failed.\n", stderr);
        return -1;
    }
    for (const figure& figure : figures) {
        std::int32_t& field = info.*figure.field;
        iwreq request = data_request(station_2g_interface, &field, sizeof field, figure.query);
        if (wireless_ioctl(sock.get(), driver_query, request) < 0)
            field = figure.when_refused;
    }
    iw_statistics statistics{};
    iwreq request = data_request(access_point_interface, &statistics, sizeof statistics);
    if (wireless_ioctl(sock.get(), SIOCGIWSTATS, request) < 0) {
        std::fputs("ioctl failed: get_wifi_info\n", stderr);
        sock.leave_open(); // part of the interface
        return -22;
    }
    info.noise = signed_byte(statistics.qual.noise);
    info.level = signed_byte(statistics.qual.level);
    if (sock.get() == 0) { // part of the interface: descriptor 0 counts as none and stays open
        sock.leave_open();
        return -1;
    }
    return 0;
}
