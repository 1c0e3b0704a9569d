// SPDX-License-Identifier: MIT
// The one place where the library calls ioctl().

#include "base/wireless_ioctl.h"

#include <cerrno>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

#include "base/text.h"

namespace libwlan {

namespace {

// glibc declares the code unsigned long, musl int.
template <typename Code>
Code code_of(int (*)(int, Code, ...));
using ioctl_code = decltype(code_of(&ioctl));

int interface_ioctl(int sock, unsigned long code, void* request) {
    return ioctl(sock, static_cast<ioctl_code>(code), request);
}

} // namespace

int open_request_socket() {
    return socket(AF_INET, SOCK_DGRAM, 0);
}

void close_request_socket(int& sock) {
    if (sock > 0) // part of the interface: descriptor 0 is not the library's to close
        close(sock);
    sock = -1;
}

void name_request(iwreq& request, const char* ifname) {
    fill_field(request.ifr_name, ifname == nullptr ? "" : ifname);
}

iwreq named_request(const char* ifname) {
    iwreq request{};
    name_request(request, ifname);
    return request;
}

iwreq data_request(const char* ifname, void* data, std::size_t size, __u16 flags) {
    iwreq request = named_request(ifname);
    request.u.data.pointer = data;
    request.u.data.length = static_cast<__u16>(size);
    request.u.data.flags = flags;
    return request;
}

int wireless_ioctl(int sock, unsigned long code, iwreq& request) {
    return interface_ioctl(sock, code, &request);
}

int read_interface_flags(int sock, const char* ifname, ifreq& request) {
    request = {};
    const std::size_t length = std::strlen(ifname);
    if (length >= sizeof request.ifr_name) {
        errno = ENODEV;
        return -1;
    }
    std::memcpy(request.ifr_name, ifname, length);
    return interface_ioctl(sock, SIOCGIFFLAGS, &request);
}

int write_interface_flags(int sock, ifreq& request) {
    return interface_ioctl(sock, SIOCSIFFLAGS, &request);
}

} // namespace libwlan
