#include <cstdio>

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "libwlan/wext.h"
#include "realtek/log.h"
#include "util/interface_state.h"

// The numbers in the messages are part of their text: field tools match on them.

namespace {

constexpr const char* in_ifc_up = "network_nic_ifc_up";

void report_error(int number, const char* what) {
    char text[64];
    std::snprintf(text, sizeof text, "%s[%d] %s", in_ifc_up, number, what);
    std::perror(text);
}

enum class attempt { up, not_yet, impossible };

attempt try_up(int sock, const char* ifname) {
    ifreq request;
    if (read_interface_flags(sock, ifname, request) < 0) {
        report_error(525, "SIOCGIFFLAGS");
        return attempt::impossible;
    }
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
    if (ioctl(sock, SIOCSIFFLAGS, &request) < 0) {
        report_error(533, "SIOCSIFFLAGS");
        return attempt::not_yet;
    }
    if (read_interface_flags(sock, ifname, request) < 0) {
        report_error(543, "SIOCGIFFLAGS");
        return attempt::impossible;
    }
    return (request.ifr_flags & IFF_UP) != 0 ? attempt::up : attempt::not_yet;
}

} // namespace

int wext::network_nic_ifc_up(FILE* log, const char* ifname, int retries) {
    if (ifname == nullptr || *ifname == '\0') {
        log_to(log, "%s[%d] invilad devname\n", in_ifc_up, 512);
        return -1;
    }
    const int control = socket(AF_INET, SOCK_DGRAM, 0);
    if (control < 0) {
        report_error(516, "socket");
        return -1;
    }
    attempt last = attempt::not_yet;
    do {
        last = try_up(control, ifname);
        if (last != attempt::not_yet || retries <= 0)
            break;
        --retries;
        sleep(1);
    } while (retries > 0);

    if (last == attempt::not_yet)
        log_to(log, "%s[%d] Timeout\n", in_ifc_up, 559);
    close(control);
    return last == attempt::up ? 0 : -1;
}
