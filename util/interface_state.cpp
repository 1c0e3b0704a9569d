#include "util/interface_state.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

#include "libwlan/link_status.h"

int does_if_exist(const char* name) {
    if (name == nullptr)
        return 1;
    char path[256];
    std::snprintf(path, sizeof path, "/sys/class/net/%s/operstate", name);
    FILE* file = std::fopen(path, "r");
    if (file == nullptr)
        return 1; // an interface that is not there counts as existing: the survey then leaves it
                  // alone
    char state[64];
    const bool down =
        std::fread(state, 1, sizeof state, file) >= 4 && std::memcmp(state, "down", 4) == 0;
    std::fclose(file);
    return down ? 0 : 1;
}

int read_interface_flags(int sock, const char* ifname, ifreq& request) {
    request = {};
    const std::size_t length = std::strlen(ifname);
    if (length >= sizeof request.ifr_name) {
        errno = ENODEV;
        return -1;
    }
    std::memcpy(request.ifr_name, ifname, length);
    return ioctl(sock, SIOCGIFFLAGS, &request);
}

int does_ifup(const char* name) {
    const char* ifname = name == nullptr ? "" : name;
    const int sock = socket(AF_INET, SOCK_DGRAM, 0);
    if (sock < 0) {
        std::printf("%s[%d] Create socket fails:%s\n", "does_ifup", 1476, std::strerror(errno));
        return -1;
    }
    int result = -1;
    ifreq request;
    if (read_interface_flags(sock, ifname, request) < 0)
        std::printf("%s[%d] %s get SIOCGIFFLAGS fails:%s\n", "does_ifup", 1483, ifname,
                    std::strerror(errno));
    else
        result = (request.ifr_flags & IFF_UP) != 0 ? 1 : 0;
    close(sock);
    return result;
}
