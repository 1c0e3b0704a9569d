// SPDX-License-Identifier: MIT
// Bringing an interface up.

#include <cerrno>
#include <cstring>

#include <unistd.h>

#include "base/message.h"
#include "base/unique_fd.h"
#include "base/wireless_ioctl.h"
#include "libwlan/wext.h"

using namespace libwlan;

namespace {

enum class attempt { up, not_yet, impossible };

attempt try_up(int sock, const char* ifname) {
    ifreq request;
    if (read_interface_flags(sock, ifname, request) < 0) {
        print_message(stderr, "network_nic_ifc_up[525] SIOCGIFFLAGS: %s\n", std::strerror(errno));
        return attempt::impossible;
    }
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
    if (write_interface_flags(sock, request) < 0) {
        print_message(stderr, "network_nic_ifc_up[533] SIOCSIFFLAGS: %s\n", std::strerror(errno));
        return attempt::not_yet;
    }
    if (read_interface_flags(sock, ifname, request) < 0) {
        print_message(stderr, "network_nic_ifc_up[543] SIOCGIFFLAGS: %s\n", std::strerror(errno));
        return attempt::impossible;
    }
    return (request.ifr_flags & IFF_UP) != 0 ? attempt::up : attempt::not_yet;
}

} // namespace

int wext::network_nic_ifc_up(FILE* log, const char* ifname, int retries) {
    if (ifname == nullptr || *ifname == '\0') {
        print_message(log, "network_nic_ifc_up[512] invilad devname\n");
        return -1;
    }
    const unique_fd control(open_request_socket());
    if (!control) {
        print_message(stderr, "network_nic_ifc_up[516] socket: %s\n", std::strerror(errno));
        return -1;
    }
    attempt last = attempt::not_yet;
    do {
        last = try_up(control.get(), ifname);
        if (last != attempt::not_yet || retries <= 0)
            break;
        --retries;
        sleep(1);
    } while (retries > 0);

    if (last == attempt::not_yet)
        print_message(log, "network_nic_ifc_up[559] Timeout\n");
    return last == attempt::up ? 0 : -1;
}
