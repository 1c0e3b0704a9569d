#include "util/association.h"

#include <cstdio>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

#include "libwlan/link_status.h"

namespace {

// Addresses that drivers give when there is no association.
constexpr ether_addr no_access_point[] = {
    {{0x00, 0x00, 0x00, 0x00, 0x00, 0x00}},
    {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
    {{0x44, 0x44, 0x44, 0x44, 0x44, 0x44}},
};

} // namespace

int ether_cmp(const ether_addr* a, const ether_addr* b) {
    return std::memcmp(a, b, sizeof *a);
}

int does_have_vaild_mac(const sockaddr* addr) {
    ether_addr mac;
    std::memcpy(&mac, addr->sa_data, sizeof mac);
    for (const ether_addr& none : no_access_point)
        if (ether_cmp(&mac, &none) == 0)
            return 0;
    return 1;
}

access_point_answer ask_access_point(const char* caller, const char* name) {
    access_point_answer answer;
    if (name == nullptr) {
        std::fprintf(stderr, "[%s]interface should not be null\n", caller);
        return answer;
    }
    answer.sock = socket(AF_INET, SOCK_DGRAM, 0);
    if (answer.sock < 0) {
        std::fprintf(stderr, "[%s]open socket failed.\n", caller);
        return answer;
    }
    name_request(answer.request, name);
    if (ioctl(answer.sock, SIOCGIWAP, &answer.request) < 0)
        std::fprintf(stderr, "[%s]SIOCGIWAP failed.\n", caller);
    else
        answer.associated = does_have_vaild_mac(&answer.request.u.ap_addr) != 0;
    return answer;
}

void close_query(int sock) {
    if (sock > 0)
        close(sock);
}

int does_wifi_associated(const char* name) {
    const access_point_answer answer = ask_access_point("does_wifi_associated", name);
    close_query(answer.sock);
    return answer.associated ? 1 : 0;
}
