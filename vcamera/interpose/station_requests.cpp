// SPDX-License-Identifier: MIT
// The requests of Wireless Extensions about the network that an interface is joined to or serves.

#include "vcamera/interpose/station_requests.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>

#include <linux/wireless.h>

#include "vcamera/model/interfaces.h"
#include "vcamera/model/texts.h"

namespace {

bool is_access_point(const camera_state& state, int interface) {
    return state.adapter == adapter_family::mediatek ? interface == MTK_AP
                                                     : interface == REALTEK_AP;
}

std::string name_of_network(const camera_state& state, int interface) {
    if (const access_point* point = joined(state, interface))
        return ssid_bytes(*point);
    if (!is_access_point(state, interface))
        return "";
    if (state.adapter == adapter_family::mediatek)
        return state.mtk.vifs[MTK_AP].values[MTK_SSID];
    return {state.hosted.ssid, state.hosted.ssid_length};
}

/// As the kernel hands on what a driver gives.
int give(const void* bytes, std::size_t length, iwreq& request) {
    if (request.u.data.pointer == nullptr)
        return -EFAULT;
    if (length > request.u.data.length)
        return -E2BIG;
    std::memcpy(request.u.data.pointer, bytes, length);
    request.u.data.length = static_cast<__u16>(length);
    return 0;
}

} // namespace

int give_essid(const camera_state& state, int interface, iwreq& request) {
    const std::string name = name_of_network(state, interface);
    request.u.essid.flags = name.empty() ? 0 : 1;
    return give(name.data(), name.size(), request);
}

int give_mode(const camera_state& state, int interface, iwreq& request) {
    request.u.mode = is_access_point(state, interface) ? IW_MODE_MASTER : IW_MODE_INFRA;
    return 0;
}

int give_realtek_statistics(const camera_state& state, int interface, iwreq& request) {
    const access_point* point = joined(state, interface);
    if (point == nullptr)
        return -EOPNOTSUPP;
    iw_statistics result{};
    result.qual.qual = point->quality;
    result.qual.level = static_cast<std::uint8_t>(point->level);
    result.qual.noise = static_cast<std::uint8_t>(MTK_NOISE);
    result.qual.updated = IW_QUAL_ALL_UPDATED | IW_QUAL_DBM;
    return give(&result, sizeof result, request);
}

int give_range(int max_quality, iwreq& request) {
    iw_range range{};
    range.we_version_compiled = WIRELESS_EXT;
    range.max_qual.qual = static_cast<std::uint8_t>(max_quality);
    return give(&range, sizeof range, request);
}
