// SPDX-License-Identifier: MIT
// The scan requests of Wireless Extensions, as the Realtek driver answers them.

#include "vcamera/interpose/scan_requests.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>

#include <linux/wireless.h>

#include "vcamera/interpose/scene_answer.h"
#include "vcamera/interpose/station_requests.h"
#include "vcamera/model/scan_events.h"

namespace {

/// The radio does one scan at a time.
int start_scan(camera_state& state) {
    realtek_radio& radio = state.realtek;
    if (supplicant_busy(state.supplicant))
        return -EBUSY;
    radio.scanned = 1;
    radio.busy_left = radio.busy;
    return 0;
}

/// All results or none. The length's field has 16 bits, so that results of more never fit.
int give(const std::string& bytes, bool hint, iwreq& request) {
    if (request.u.data.pointer == nullptr)
        return -EFAULT;
    const bool fits = bytes.size() <= request.u.data.length;
    if (fits)
        bytes.copy(static_cast<char*>(request.u.data.pointer), bytes.size());
    if (fits || hint)
        request.u.data.length = static_cast<__u16>(std::min<std::size_t>(bytes.size(), UINT16_MAX));
    return fits ? 0 : -E2BIG;
}

int give_results(camera_state& state, iwreq& request) {
    realtek_radio& radio = state.realtek;
    if (radio.busy_left > 0) {
        --radio.busy_left;
        return -EAGAIN;
    }
    std::string results;
    if (const auto other = scene_answer("scan")) {
        results = *other;
    } else if (radio.scanned != 0) {
        results = scan_events(state.air, radio.frequencies, radio.vendor_bytes);
    }
    return give(results, radio.hint != 0, request);
}

} // namespace

int answer_scan_request(camera_state& state, int interface, unsigned long code, iwreq& request) {
    const bool up = up_flag(state, interface) != 0;
    if (code == SIOCGIWSTATS)
        return give_realtek_statistics(state, interface, request);
    if (request.u.data.flags != 0)
        return -EINVAL;
    switch (code) {
    case SIOCSIWSCAN:
        if (request.u.data.pointer != nullptr || request.u.data.length != 0)
            return -EFAULT; // a scan with parameters
        return up ? start_scan(state) : -ENETDOWN;
    case SIOCGIWSCAN:
        return up ? give_results(state, request) : -ENETDOWN;
    case SIOCGIWRANGE:
        return give_range(state.realtek.max_quality, request);
    default:
        return -EOPNOTSUPP;
    }
}
