// SPDX-License-Identifier: MIT
// Questions about links and interfaces, but for the radio figures of one family.

#include "libwlan/link_status.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "base/message.h"
#include "base/program.h"
#include "base/unique_fd.h"
#include "base/unique_file.h"
#include "base/wireless_ioctl.h"

using namespace libwlan;

namespace {

// Addresses that drivers give when there is no association.
constexpr ether_addr no_access_point[] = {
    {{0x00, 0x00, 0x00, 0x00, 0x00, 0x00}},
    {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
    {{0x44, 0x44, 0x44, 0x44, 0x44, 0x44}},
};

// Register 1 of PHY 0 of the Ethernet switch: the MII basic status register.
constexpr const char* read_status_register = "mii_mgr -g -p 0 -r 01";

// Ending of a status value with the link-up and auto-negotiation-complete bits set.
constexpr std::string_view link_up_digits = "6d";

/// What the driver said about the access point of a station.
struct association {
    unique_fd sock; ///< for further requests; none when nothing could be asked
    iwreq request{};
    bool exists = false;
};

/// Asks the driver for the access point of `name`. Failures are told as `caller`'s.
association ask_association(const char* caller, const char* name) {
    if (name == nullptr) {
        std::fprintf(stderr, "[%s]interface should not be null\n", caller);
        return {};
    }
    association answer{unique_fd(open_request_socket())};
    if (!answer.sock) {
        std::fprintf(stderr, "[%s]open socket failed.\n", caller);
        return answer;
    }
    name_request(answer.request, name);
    if (wireless_ioctl(answer.sock.get(), SIOCGIWAP, answer.request) < 0) {
        std::fprintf(stderr, "[%s]SIOCGIWAP failed.\n", caller);
    } else {
        answer.exists = does_have_vaild_mac(&answer.request.u.ap_addr) != 0;
    }
    return answer;
}

/// Closes a query's socket, but not descriptor 0, which is part of the interface.
void close_query(unique_fd& sock) {
    int number = sock.leave_open();
    close_request_socket(number);
}

} // namespace

int does_if_exist(const char* name) {
    if (name == nullptr)
        return 1;
    char path[256];
    std::snprintf(path, sizeof path, "/sys/class/net/%s/operstate", name);
    const unique_file file = open_file(path, "r");
    if (file == nullptr)
        return 1; // an interface that is not there counts as existing: a survey leaves it alone
    char state[64];
    const bool is_down =
        std::fread(state, 1, sizeof state, file.get()) >= 4 && std::memcmp(state, "down", 4) == 0;
    return is_down ? 0 : 1;
}

int ether_cmp(const ether_addr* a, const ether_addr* b) {
    return std::memcmp(a, b, sizeof *a);
}

int does_have_vaild_mac(const sockaddr* addr) {
    ether_addr mac;
    std::memcpy(&mac, addr->sa_data, sizeof mac);
    for (const ether_addr& none : no_access_point) {
        if (ether_cmp(&mac, &none) == 0)
            return 0;
    }
    return 1;
}

int does_wifi_associated(const char* name) {
    association answer = ask_association("does_wifi_associated", name);
    close_query(answer.sock);
    return answer.exists ? 1 : 0;
}

int get_wifi_channel(const char* name) {
    association answer = ask_association("get_wifi_channel", name);
    if (!answer.sock)
        return -1;
    if (!answer.exists) {
        close_query(answer.sock);
        print_message(stderr, "get_wifi_channel[1345] return -1\n");
        return -1;
    }
    print_message(stderr, "get_wifi_channel[1329] associ = true\n");
    name_request(answer.request, name);
    if (wireless_ioctl(answer.sock.get(), SIOCGIWFREQ, answer.request) < 0) {
        std::perror("SIOCGIWFREQ:");
        answer.sock.leave_open(); // part of the interface
        return -1;
    }
    close_query(answer.sock);
    // The driver puts the channel number itself where Wireless Extensions have the mantissa.
    const int channel = answer.request.u.freq.m;
    print_message(stderr, "get_wifi_channel[1341] wrq.u.freq.m=%d\n", channel);
    return channel;
}

int get_current_wifi_channel(const char* name) {
    const int debug_level = read_debug_level().value_or(0);
    FILE* console = open_console(); // closed only by a trace line
    if (name == nullptr) {
        trace(console, debug_level, "[get_current_wifi_channel] interface should not be null");
        return -1;
    }
    const int sock = open_request_socket(); // part of the interface: it stays open on every path
    if (sock < 0) {
        trace(console, debug_level, "[get_current_wifi_channel] open socket failed");
        return -1;
    }
    iwreq request = named_request(name);
    if (wireless_ioctl(sock, SIOCGIWFREQ, request) < 0) {
        const int error = errno;
        std::perror("SIOCGIWFREQ:");
        trace(console, debug_level, "[get_current_wifi_channel] ioctl SIOCGIWFREQ fail: %s",
              std::strerror(error));
        return -1;
    }
    const int channel = request.u.freq.m;
    print_message(stdout, "get_current_wifi_channel[1387] wrq.u.freq.m=%d\n", channel);
    trace(console, debug_level, "[get_current_wifi_channel] wrq.u.freq.m=%d", channel);
    return channel;
}

int does_ifup(const char* name) {
    const char* ifname = name == nullptr ? "" : name;
    const unique_fd sock(open_request_socket());
    if (!sock) {
        print_message(stdout, "does_ifup[1476] Create socket fails:%s\n", std::strerror(errno));
        return -1;
    }
    ifreq request;
    if (read_interface_flags(sock.get(), ifname, request) < 0) {
        print_message(stdout, "does_ifup[1483] %s get SIOCGIFFLAGS fails:%s\n", ifname,
                      std::strerror(errno));
        return -1;
    }
    return (request.ifr_flags & IFF_UP) != 0 ? 1 : 0;
}

int probe_link() {
    // Part of the interface: it runs once for what it prints on the console, once for its answer.
    run_program(read_status_register);
    const unique_pipe tool = read_program(read_status_register);
    if (tool == nullptr)
        return 0;
    char answer[128];
    const std::string_view status(answer, std::fread(answer, 1, sizeof answer, tool.get()));
    return status.find(link_up_digits) != std::string_view::npos ? 1 : 0;
}
