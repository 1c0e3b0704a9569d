// SPDX-License-Identifier: MIT
// The addresses of the camera's interfaces.

#include "vcamera/model/addresses.h"

#include <cstring>

#include <arpa/inet.h>

#include "vcamera/model/camera_state.h"
#include "vcamera/model/clock.h"
#include "vcamera/model/interfaces.h"
#include "vcamera/model/texts.h"

std::uint32_t address_of_interface(const camera_state& state, int interface) {
    const interface_addresses& addresses = state.addresses[interface];
    if (addresses.set != 0)
        return addresses.set;
    const bool given =
        addresses.joined != 0 && camera_time(state) >= addresses.joined_at + addresses.after;
    return given ? addresses.offered : 0;
}

std::optional<std::string> interface_address(const camera_state& state, int interface) {
    const in_addr address = {address_of_interface(state, interface)};
    char text[INET_ADDRSTRLEN];
    if (address.s_addr == 0 || inet_ntop(AF_INET, &address, text, sizeof text) == nullptr)
        return std::nullopt;
    return text;
}

void advance_addresses(camera_state& state, std::int64_t now) {
    for (int i = 0; i < MTK_VIFS; ++i) {
        interface_addresses& addresses = state.addresses[i];
        const bool joined = carries_data(state, i);
        if (joined && addresses.joined == 0)
            addresses.joined_at = now;
        addresses.joined = joined ? 1 : 0;
    }
}

void copy_hardware_address(int interface, std::uint8_t (&address)[6]) {
    const std::uint8_t bytes[6] = {0x02, 0xca, 0x3e,
                                   0x7a, 0x00, static_cast<std::uint8_t>(interface)};
    std::memcpy(address, bytes, sizeof bytes);
}

std::string hardware_address_text(int interface) {
    std::uint8_t address[6];
    copy_hardware_address(interface, address);
    return address_text(address);
}
