// SPDX-License-Identifier: MIT
// What the kernel tells of an interface's link.

#include "link.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <linux/wireless.h>

#include "base/unique_fd.h"
#include "libwlan/link_status.h"

namespace {

/// An interface, to ask the kernel about.
class questioner {
public:
    explicit questioner(const char* interface)
        : interface_(interface), socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

    /// @param request of 16 bits: glibc's ioctl() takes an unsigned number, musl's a signed one.
    /// @return whether the kernel answered into `data`.
    bool ask(unsigned short request, iwreq& data) const {
        std::snprintf(data.ifr_name, sizeof data.ifr_name, "%s", interface_);
        return ioctl(socket_.get(), request, &data) >= 0;
    }

    std::string bssid() const {
        iwreq data{};
        if (!ask(SIOCGIWAP, data) || does_have_vaild_mac(&data.u.ap_addr) != 1)
            return "";
        std::array<unsigned char, 6> octets{};
        std::memcpy(octets.data(), data.u.ap_addr.sa_data, octets.size());
        char text[18];
        std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", octets[0], octets[1],
                      octets[2], octets[3], octets[4], octets[5]);
        return text;
    }

    std::string ssid() const {
        char name[IW_ESSID_MAX_SIZE + 1] = "";
        iwreq data{};
        data.u.essid.pointer = name;
        data.u.essid.length = sizeof name;
        if (!ask(SIOCGIWESSID, data) || data.u.essid.flags == 0)
            return "";
        const std::size_t told = std::min<std::size_t>(data.u.essid.length, IW_ESSID_MAX_SIZE);
        // Some drivers count a NUL at the end.
        return {name, told > 0 && name[told - 1] == '\0' ? told - 1 : told};
    }

    /// A number of up to 1000 is a channel; a larger one is in Hz, or in MHz with some drivers.
    int channel() const {
        iwreq data{};
        if (!ask(SIOCGIWFREQ, data))
            return 0;
        double told = data.u.freq.m;
        for (int i = 0; i < std::min<int>(data.u.freq.e, 9); ++i)
            told *= 10;
        constexpr double mega = 1e6;
        told = told >= mega ? told / mega : told;
        return told > 0 && told < 100000 ? channel_number(static_cast<int>(std::lround(told))) : 0;
    }

    void signal(link_state& link) const {
        iw_statistics figures{};
        iwreq data{};
        data.u.data.pointer = &figures;
        data.u.data.length = sizeof figures;
        data.u.data.flags = 1; // clear what is said to be updated
        if (!ask(SIOCGIWSTATS, data) || (figures.qual.updated & IW_QUAL_LEVEL_INVALID) != 0)
            return;
        constexpr int wrap = 256;
        const int level = figures.qual.level;
        const bool is_dbm = (figures.qual.updated & IW_QUAL_DBM) != 0 || level > wrap / 2;
        if (is_dbm) {
            link.signal_dbm = level - wrap;
        } else if (level > 0) {
            link.signal_percent = std::min(level, 100);
        }
    }

    std::string address() const {
        ifreq data{};
        std::snprintf(data.ifr_name, sizeof data.ifr_name, "%s", interface_);
        if (ioctl(socket_.get(), SIOCGIFADDR, &data) < 0)
            return "";
        sockaddr_in told{};
        std::memcpy(&told, &data.ifr_addr, sizeof told);
        char text[INET_ADDRSTRLEN] = "";
        return told.sin_family == AF_INET && told.sin_addr.s_addr != 0 &&
                       inet_ntop(AF_INET, &told.sin_addr, text, sizeof text) != nullptr
                   ? text
                   : "";
    }

private:
    const char* interface_;
    libwlan::unique_fd socket_;
};

} // namespace

bool is_address(const std::string& text) {
    constexpr std::size_t length = 17;
    return text.size() == length &&
           text.find_first_not_of("0123456789abcdefABCDEF:") == std::string::npos;
}

int channel_number(int told) {
    constexpr int least_mhz = 1000;
    constexpr int channel_14 = 2484; // MHz, as the others
    constexpr int before_channel_1 = 2407;
    constexpr int before_5ghz = 5000;
    if (told < least_mhz)
        return told;
    if (told == channel_14)
        return 14;
    return (told - (told < before_5ghz ? before_channel_1 : before_5ghz)) / 5;
}

link_state ask_association(const char* interface) {
    link_state link;
    const questioner kernel(interface);
    link.bssid = kernel.bssid();
    link.associated = !link.bssid.empty();
    link.address = kernel.address();
    if (link.associated)
        link.ssid = kernel.ssid();
    return link;
}

link_state ask_link(const char* interface) {
    link_state link = ask_association(interface);
    if (!link.associated)
        return link;
    const questioner kernel(interface);
    link.channel = kernel.channel();
    kernel.signal(link);
    return link;
}

int ask_channel(const char* interface) {
    return questioner(interface).channel();
}

std::string ask_ssid(const char* interface) {
    return questioner(interface).ssid();
}
