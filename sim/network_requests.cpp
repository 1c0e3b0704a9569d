#include "sim/network_requests.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/ioctl.h>
#include <sys/socket.h>

#include <linux/if_arp.h>
#include <linux/wireless.h>

#include "sim/interfaces.h"
#include "sim/scan_requests.h"
#include "sim/scene_answer.h"

namespace {

constexpr unsigned long mtk_query = SIOCIWFIRSTPRIV + 1;
constexpr unsigned long mtk_set = SIOCIWFIRSTPRIV + 2;
constexpr unsigned long mtk_register = SIOCIWFIRSTPRIV + 3;
constexpr unsigned long mtk_profile = SIOCIWFIRSTPRIV + 9;
constexpr unsigned long mtk_survey = SIOCIWFIRSTPRIV + 13;

std::string request_name(unsigned long code, const iwreq* request) {
    constexpr struct {
        unsigned long code;
        const char* name;
    } names[] = {
        {SIOCGIFFLAGS, "SIOCGIFFLAGS"}, {SIOCSIFFLAGS, "SIOCSIFFLAGS"}, {SIOCGIWAP, "SIOCGIWAP"},
        {SIOCGIWFREQ, "SIOCGIWFREQ"},   {SIOCGIWSTATS, "SIOCGIWSTATS"}, {mtk_set, "set"},
        {SIOCSIWSCAN, "SIOCSIWSCAN"},   {SIOCGIWSCAN, "SIOCGIWSCAN"},   {mtk_survey, "survey"},
        {SIOCGIWRANGE, "SIOCGIWRANGE"}, {mtk_register, "register"},     {mtk_profile, "profile"},
    };
    for (const auto& known : names)
        if (known.code == code)
            return known.name;
    char text[32];
    if (code == mtk_query && request != nullptr)
        std::snprintf(text, sizeof text, "query 0x%04x", request->u.data.flags);
    else
        std::snprintf(text, sizeof text, "0x%04lx", code);
    return text;
}

/// A name of full length comes without a terminator.
std::string interface_name(const iwreq& request) {
    return {request.ifr_name, strnlen(request.ifr_name, IFNAMSIZ)};
}

/// Some texts come with their terminator.
std::string data_text(const iwreq& request) {
    if (request.u.data.pointer == nullptr)
        return "";
    const auto* text = static_cast<const char*>(request.u.data.pointer);
    return {text, strnlen(text, request.u.data.length)};
}

/// The driver's answer goes out to who knows its size.
template <typename answer>
int give(const answer& given, iwreq& request) {
    if (request.u.data.pointer == nullptr)
        return -EFAULT;
    if (request.u.data.length != sizeof given)
        return -EINVAL;
    std::memcpy(request.u.data.pointer, &given, sizeof given);
    return 0;
}

int errno_of(mtk_answer answer) {
    constexpr int errnos[] = {0, -EINVAL, -ENETDOWN};
    return errnos[answer];
}

iw_statistics statistics(const camera_state& state) {
    iw_statistics result{};
    const int level = mtk_radio_level(&state.mtk, &state.air);
    result.qual.qual = static_cast<std::uint8_t>(std::clamp(2 * (level + 100), 0, 100));
    result.qual.level = static_cast<std::uint8_t>(level);
    result.qual.noise = static_cast<std::uint8_t>(MTK_NOISE);
    return result;
}

using text_printer = mtk_answer(const mtk_radio*, const air*, char*, std::size_t*);

int give_text(const camera_state& state, iwreq& request, const char* name, text_printer* print) {
    if (request.u.data.pointer == nullptr)
        return -EFAULT;
    auto* text = static_cast<char*>(request.u.data.pointer);
    std::size_t length = request.u.data.length;
    mtk_answer answer = MTK_DONE;
    if (const auto other = scene_answer(name))
        length = other->copy(text, length);
    else
        answer = print(&state.mtk, &state.air, text, &length);
    request.u.data.length = static_cast<__u16>(length);
    return errno_of(answer);
}

/// The driver answers in the caller's buffer, past the length that it was given: camera programs
/// keep 256 bytes there.
int use_register(mtk_radio& radio, iwreq& request) {
    if (request.u.data.pointer == nullptr)
        return -EFAULT;
    auto* text = static_cast<char*>(request.u.data.pointer);
    if (const auto other = scene_answer("register")) {
        other->copy(text, 256);
        return 0;
    }
    return errno_of(mtk_radio_register(&radio, text, request.u.data.length));
}

int answer_mtk_request(camera_state& state, int interface, unsigned long code, iwreq& request) {
    if (code != mtk_query && request.u.data.flags != 0)
        return -EINVAL; // flags choose a query, and nothing else
    std::int32_t figure = 0;
    mtk_answer answer = MTK_DONE;
    switch (code) {
    case SIOCGIWSTATS:
        return give(statistics(state), request);
    case mtk_query:
        answer = mtk_radio_query(&state.mtk, &state.air, request.u.data.flags, &figure);
        return answer == MTK_DONE ? give(figure, request) : errno_of(answer);
    case mtk_survey:
        return give_text(state, request, "survey", mtk_radio_survey);
    case mtk_profile:
        return give_text(state, request, "profile", mtk_radio_profile);
    case mtk_register:
        return use_register(state.mtk, request);
    case mtk_set:
        return request.u.data.pointer == nullptr
                   ? -EFAULT
                   : set_private(state, interface, data_text(request));
    default:
        return code >= SIOCIWFIRSTPRIV ? -EINVAL : -EOPNOTSUPP;
    }
}

} // namespace

bool is_network_request(unsigned long code) {
    return code >= 0x8900 && code <= 0x8BFF;
}

crossing describe_request(unsigned long code, const iwreq* request) {
    crossing call{"ioctl", "-", request_name(code, request), ""};
    if (request == nullptr)
        return call;
    call.subject = interface_name(*request);
    if (code >= SIOCIWFIRSTPRIV || code == SIOCGIWSCAN)
        call.length = std::to_string(request->u.data.length);
    if (code == mtk_set || code == mtk_register)
        call.text = data_text(*request);
    if (code == SIOCSIFFLAGS)
        call.text = (reinterpret_cast<const ifreq*>(request)->ifr_flags & IFF_UP) ? "up" : "down";
    return call;
}

int answer_request(camera_state& state, unsigned long code, iwreq* request) {
    if (request == nullptr)
        return -EFAULT;
    const int interface = find_interface(state, interface_name(*request));
    if (interface == no_interface)
        return -ENODEV;
    short& flags = reinterpret_cast<ifreq*>(request)->ifr_flags;
    const access_point* point = joined(state, interface);
    const bool is_mtk = state.adapter == adapter_family::mediatek;
    switch (code) {
    case SIOCGIFFLAGS:
        flags = IFF_BROADCAST | IFF_MULTICAST;
        if (up_flag(state, interface) != 0)
            flags |= IFF_UP;
        if (point != nullptr)
            flags |= IFF_RUNNING; // the carrier
        return 0;
    case SIOCSIFFLAGS:
        if ((flags & IFF_MULTICAST) == 0)
            return -EINVAL; // a change of one flag keeps the others
        bring(state, interface, (flags & IFF_UP) != 0);
        return 0;
    case SIOCGIWAP:
        request->u.ap_addr = {};
        request->u.ap_addr.sa_family = ARPHRD_ETHER;
        if (point != nullptr)
            std::memcpy(request->u.ap_addr.sa_data, point->bssid, sizeof point->bssid);
        return 0;
    case SIOCGIWFREQ: // both drivers give the channel's number where others give a frequency
        request->u.freq = {};
        request->u.freq.m = is_mtk ? mtk_radio_channel(&state.mtk, &state.air, interface)
                                   : realtek_radio_channel(state.realtek, state.air, interface);
        return 0;
    default:
        return is_mtk ? answer_mtk_request(state, interface, code, *request)
                      : answer_scan_request(state, interface, code, *request);
    }
}

int set_private(camera_state& state, int interface, const std::string& text) {
    return errno_of(mtk_radio_set(&state.mtk, &state.air, interface, text.data(), text.size()));
}
