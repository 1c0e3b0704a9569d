// SPDX-License-Identifier: MIT
// The ioctl requests that the kernel and the Wi-Fi drivers answer.

#include "vcamera/interpose/network_requests.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <linux/if_arp.h>
#include <linux/wireless.h>

#include "vcamera/interpose/address_requests.h"
#include "vcamera/interpose/scan_requests.h"
#include "vcamera/interpose/scene_answer.h"
#include "vcamera/interpose/station_requests.h"
#include "vcamera/model/clock.h"
#include "vcamera/model/interfaces.h"
#include "vcamera/model/network_tables.h"

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
        {SIOCGIFFLAGS, "SIOCGIFFLAGS"}, {SIOCSIFFLAGS, "SIOCSIFFLAGS"},
        {SIOCGIWAP, "SIOCGIWAP"},       {SIOCGIWFREQ, "SIOCGIWFREQ"},
        {SIOCGIWSTATS, "SIOCGIWSTATS"}, {mtk_set, "set"},
        {SIOCSIWSCAN, "SIOCSIWSCAN"},   {SIOCGIWSCAN, "SIOCGIWSCAN"},
        {mtk_survey, "survey"},         {SIOCGIWRANGE, "SIOCGIWRANGE"},
        {mtk_register, "register"},     {mtk_profile, "profile"},
        {SIOCGIFCONF, "SIOCGIFCONF"},   {SIOCGIFNAME, "SIOCGIFNAME"},
        {SIOCGIWNAME, "SIOCGIWNAME"},   {SIOCGIFINDEX, "SIOCGIFINDEX"},
        {SIOCGIWESSID, "SIOCGIWESSID"}, {SIOCGIWMODE, "SIOCGIWMODE"},
        {SIOCGIFADDR, "SIOCGIFADDR"},   {SIOCSIFADDR, "SIOCSIFADDR"},
    };
    for (const auto& known : names) {
        if (known.code == code)
            return known.name;
    }
    char text[32];
    if (code == mtk_query && request != nullptr) {
        std::snprintf(text, sizeof text, "query 0x%04x", request->u.data.flags);
    } else {
        std::snprintf(text, sizeof text, "0x%04lx", code);
    }
    return text;
}

/// A name of full length comes without a terminator.
std::string interface_name(const iwreq& request) {
    return {request.ifr_name, strnlen(request.ifr_name, IFNAMSIZ)};
}

/// All that the caller counted.
std::string data_text(const iwreq& request) {
    if (request.u.data.pointer == nullptr)
        return "";
    return {static_cast<const char*>(request.u.data.pointer), request.u.data.length};
}

/// Network requests reach their drivers through sockets, whatever the sockets' family.
/// @return 0 or a negative errno.
int check_socket(int fd) {
    struct stat about {};
    if (fstat(fd, &about) != 0)
        return -errno;
    return S_ISSOCK(about.st_mode) ? 0 : -ENOTTY;
}

std::int64_t milliseconds(const camera_state& state) {
    return camera_time(state) / 1000;
}

/// The driver's answer goes out to who knows its size.
template <typename Answer>
int give(const Answer& given, iwreq& request) {
    if (request.u.data.pointer == nullptr)
        return -EFAULT;
    if (request.u.data.length != sizeof given)
        return -EINVAL;
    std::memcpy(request.u.data.pointer, &given, sizeof given);
    return 0;
}

int give_name(const camera_state& state, ifreq& request) {
    const char* name = name_of_index(state, static_cast<unsigned int>(request.ifr_ifindex));
    if (name == nullptr)
        return -ENODEV;
    std::snprintf(request.ifr_name, IFNAMSIZ, "%s", name);
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

/// @param other text of the scene, in place of what `print` gives.
template <typename Printer>
int give_text(iwreq& request, const std::optional<std::string>& other, const Printer& print) {
    if (request.u.data.pointer == nullptr)
        return -EFAULT;
    auto* text = static_cast<char*>(request.u.data.pointer);
    std::size_t length = request.u.data.length;
    mtk_answer answer = MTK_DONE;
    if (other) {
        length = other->copy(text, length);
    } else {
        answer = print(text, &length);
    }
    request.u.data.length = static_cast<__u16>(length);
    return errno_of(answer);
}

/// A scene's table is there when the interface's survey is over, as the driver's own.
int give_survey(const camera_state& state, int interface, iwreq& request) {
    const std::int64_t now = milliseconds(state);
    const bool over = mtk_radio_surveyed(&state.mtk, interface, now) != 0;
    const auto other = over ? scene_answer("survey") : std::nullopt;
    return give_text(request, other, [&](char* text, std::size_t* length) {
        return mtk_radio_survey(&state.mtk, &state.air, interface, now, text, length);
    });
}

/// A scene's profile is there without a session, but on AP-clients only.
int give_profile(const camera_state& state, int interface, iwreq& request) {
    const auto other = interface != MTK_AP ? scene_answer("profile") : std::nullopt;
    return give_text(request, other, [&](char* text, std::size_t* length) {
        return mtk_radio_profile(&state.mtk, &state.air, interface, text, length);
    });
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
    if (code != mtk_query && code != SIOCGIWSTATS && request.u.data.flags != 0)
        return -EINVAL; // flags choose a query, and whether the kernel starts statistics afresh
    std::int32_t figure = 0;
    mtk_answer answer = MTK_DONE;
    switch (code) {
    case SIOCGIWSTATS:
        return give(statistics(state), request);
    case SIOCGIWRANGE:
        return give_range(100, request);
    case mtk_query:
        answer = mtk_radio_query(&state.mtk, &state.air, interface, request.u.data.flags, &figure);
        return answer == MTK_DONE ? give(figure, request) : errno_of(answer);
    case mtk_survey:
        return give_survey(state, interface, request);
    case mtk_profile:
        return give_profile(state, interface, request);
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

/// The driver gives the channel's number where others give a frequency.
int give_mtk_channel(const camera_state& state, int interface, iw_freq& channel) {
    channel.m = mtk_radio_channel(&state.mtk, interface);
    return 0;
}

int give_realtek_channel(const camera_state& state, const access_point* point, int interface,
                         iw_freq& channel) {
    if (state.realtek.frequencies == frequency_form::channel) {
        channel.m = realtek_radio_channel(state.realtek, state.air, interface);
        return 0;
    }
    if (point == nullptr)
        return -EINVAL;
    channel.m = point->mhz;
    channel.e = 6;
    return 0;
}

} // namespace

bool is_network_request(unsigned long code) {
    return code >= SIOCADDRT && code <= SIOCIWLASTPRIV; // below are those of any socket
}

intercepted_call describe_request(unsigned long code, const iwreq* request) {
    intercepted_call call{"ioctl", "-", request_name(code, request), ""};
    if (request == nullptr || code == SIOCGIFCONF || code == SIOCGIFNAME)
        return call; // that names no interface
    call.subject = interface_name(*request);
    if (code >= SIOCIWFIRSTPRIV || code == SIOCGIWSCAN)
        call.length = std::to_string(request->u.data.length);
    if (code == mtk_set || code == mtk_register)
        call.text = data_text(*request);
    if (code == mtk_register && !call.text.empty() && call.text.back() == '\0')
        call.text.pop_back(); // belongs to the request
    if (code == SIOCSIFFLAGS)
        call.text = (reinterpret_cast<const ifreq*>(request)->ifr_flags & IFF_UP) ? "up" : "down";
    return call;
}

int answer_request(camera_state& state, int fd, unsigned long code, iwreq* request) {
    if (const int error = check_socket(fd); error != 0)
        return error;
    if (request == nullptr)
        return -EFAULT;
    if (code == SIOCGIFCONF)
        return list_addresses(state, *reinterpret_cast<ifconf*>(request));
    if (code == SIOCGIFNAME)
        return give_name(state, *reinterpret_cast<ifreq*>(request));
    const int interface = find_interface(state, interface_name(*request));
    if (interface == no_interface)
        return -ENODEV;
    if (is_address_request(code)) {
        return answer_address_request(state, interface, code, *reinterpret_cast<ifreq*>(request));
    }
    short& flags = reinterpret_cast<ifreq*>(request)->ifr_flags;
    const access_point* point = joined(state, interface);
    const bool is_mtk = state.adapter == adapter_family::mediatek;
    switch (code) {
    case SIOCGIFFLAGS:
        flags = interface_flags(state, interface);
        return 0;
    case SIOCSIFFLAGS:
        if ((flags & IFF_MULTICAST) == 0)
            return -EINVAL; // a change of one flag keeps the others
        bring(state, interface, (flags & IFF_UP) != 0);
        return 0;
    case SIOCGIFINDEX:
        reinterpret_cast<ifreq*>(request)->ifr_ifindex = index_of(interface);
        return 0;
    case SIOCGIWNAME:
        std::strcpy(request->u.name, "IEEE 802.11");
        return 0;
    case SIOCGIWAP:
        request->u.ap_addr = {};
        request->u.ap_addr.sa_family = ARPHRD_ETHER;
        if (point != nullptr)
            std::memcpy(request->u.ap_addr.sa_data, point->bssid, sizeof point->bssid);
        return 0;
    case SIOCGIWESSID:
        return give_essid(state, interface, *request);
    case SIOCGIWMODE:
        return give_mode(state, interface, *request);
    case SIOCGIWFREQ:
        request->u.freq = {};
        return is_mtk ? give_mtk_channel(state, interface, request->u.freq)
                      : give_realtek_channel(state, point, interface, request->u.freq);
    default:
        return is_mtk ? answer_mtk_request(state, interface, code, *request)
                      : answer_scan_request(state, interface, code, *request);
    }
}

int set_private(camera_state& state, int interface, const std::string& text) {
    return errno_of(mtk_radio_set(&state.mtk, &state.air, interface, text.data(), text.size(),
                                  milliseconds(state)));
}

void show_figures(const camera_state& state, const char* path) {
    if (std::strcmp(path, "/proc/net/wireless") != 0)
        return;
    radio_quality quality{};
    if (state.adapter == adapter_family::mediatek) {
        const iw_quality figures = statistics(state).qual;
        quality = {figures.qual, static_cast<std::int8_t>(figures.level),
                   static_cast<std::int8_t>(figures.noise)};
    }
    show_network_tables(state, quality, scratch_folder());
}
