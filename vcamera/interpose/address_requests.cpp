// SPDX-License-Identifier: MIT
// The requests about the addresses of interfaces.

#include "vcamera/interpose/address_requests.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <arpa/inet.h>
#include <net/if.h>
#include <sys/ioctl.h>

#include <linux/if_arp.h>

#include "vcamera/model/interfaces.h"

bool is_address_request(unsigned long code) {
    return code == SIOCGIFADDR || code == SIOCSIFADDR || code == SIOCGIFNETMASK ||
           code == SIOCSIFNETMASK || code == SIOCGIFBRDADDR || code == SIOCGIFHWADDR;
}

int answer_address_request(camera_state& state, int interface, unsigned long code, ifreq& request) {
    std::uint32_t address = address_of_interface(state, interface);
    sockaddr_in given{};
    std::uint8_t hardware[6];
    switch (code) {
    case SIOCSIFADDR:
        std::memcpy(&given, &request.ifr_addr, sizeof given);
        state.addresses[interface].set = given.sin_addr.s_addr;
        bring(state, interface, true);
        return 0;
    case SIOCSIFNETMASK:
        return 0;
    case SIOCGIFHWADDR:
        copy_hardware_address(interface, hardware);
        request.ifr_hwaddr = {};
        request.ifr_hwaddr.sa_family = ARPHRD_ETHER;
        std::memcpy(request.ifr_hwaddr.sa_data, hardware, sizeof hardware);
        return 0;
    default:
        break;
    }
    if (address == 0)
        return -EADDRNOTAVAIL;
    if (code == SIOCGIFNETMASK)
        address = netmask();
    if (code == SIOCGIFBRDADDR)
        address = broadcast_of(address);
    request.ifr_addr = socket_address(address);
    return 0;
}

int list_addresses(const camera_state& state, ifconf& request) {
    const auto room = static_cast<std::size_t>(request.ifc_len);
    std::size_t used = 0;
    for (int i = 0; i < MTK_VIFS; ++i) {
        const std::uint32_t address = address_of_interface(state, i);
        if (address == 0)
            continue;
        ifreq entry{};
        std::snprintf(entry.ifr_name, sizeof entry.ifr_name, "%.15s", state.interfaces[i]);
        entry.ifr_addr = socket_address(address);
        if (request.ifc_buf != nullptr) { // else it asks for the size
            if (used + sizeof entry > room)
                break;
            std::memcpy(request.ifc_buf + used, &entry, sizeof entry);
        }
        used += sizeof entry;
    }
    request.ifc_len = static_cast<int>(used);
    return 0;
}

sockaddr socket_address(std::uint32_t address) {
    sockaddr_in given{};
    given.sin_family = AF_INET;
    given.sin_addr.s_addr = address;
    sockaddr result;
    std::memcpy(&result, &given, sizeof result);
    return result;
}

std::uint32_t netmask() {
    return htonl(0xffffff00);
}

std::uint32_t broadcast_of(std::uint32_t address) {
    return address | ~netmask();
}
