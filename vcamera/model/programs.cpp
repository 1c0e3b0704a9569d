// SPDX-License-Identifier: MIT
// The programs of the camera's image.

#include "vcamera/model/programs.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include <arpa/inet.h>

#include "vcamera/interpose/network_requests.h"
#include "vcamera/model/daemons.h"
#include "vcamera/model/interfaces.h"

namespace {

int iwpriv(camera_state& state, const words& command, program_output& output) {
    const int interface = find_interface(state, command[1]);
    if (interface == no_interface || state.adapter != adapter_family::mediatek)
        return fail(output, command[1] + "  no private ioctls.", 255);
    // The tool counts the text's NUL, which the driver takes off.
    const int error = set_private(state, interface, command[3]);
    if (command[2] != "set" || error != 0)
        return fail(output, command[2] + " (8BE2): " + std::strerror(-error), 255);
    return 0;
}

int ifconfig(camera_state& state, const words& command, program_output& output) {
    const int interface = find_interface(state, command[1]);
    if (interface == no_interface)
        return fail(output, "ifconfig: SIOCGIFFLAGS: No such device");
    for (std::size_t i = 2; i < command.size() && !command[i].empty(); ++i) {
        in_addr address{};
        const bool down = command[i] == "down";
        if (!down && command[i] != "up" && inet_aton(command[i].c_str(), &address) == 0)
            return fail(output, "ifconfig: bad address '" + command[i] + "'");
        if (!down && command[i] != "up")
            state.addresses[interface].set = address.s_addr;
        bring(state, interface, !down); // an address, too, brings an interface up
    }
    return 0;
}

int ifdown(camera_state& state, const words& command, program_output& output) {
    const int interface = find_interface(state, command[1]);
    if (interface == no_interface)
        return fail(output, "ifdown: interface " + command[1] + " not configured");
    bring(state, interface, false);
    return 0;
}

/// "iwgetid --raw --channel INTERFACE"
int iwgetid(camera_state& state, const words& command, program_output& output) {
    const int interface = find_interface(state, command[3]);
    const access_point* point = interface == no_interface ? nullptr : joined(state, interface);
    if (point == nullptr)
        return 255;
    output.out = std::to_string(air_channel(point->mhz)) + "\n";
    return 0;
}

int lsusb(camera_state& state, const words& /*command*/, program_output& output) {
    constexpr const char* adapters[] = {
        "", "Bus 001 Device 002: ID 148f:7601 Ralink Technology, Corp. MT7601U\n",
        "Bus 001 Device 002: ID 0bda:8179 Realtek Semiconductor Corp. RTL8188EUS\n"};
    if (state.usb == usb_listing::absent)
        return fail(output, "unable to initialize libusb");
    output.out = "Bus 001 Device 001: ID 1d6b:0002 Linux Foundation 2.0 root hub\n";
    output.out += adapters[static_cast<int>(state.adapter)];
    return 0;
}

/// Prints the basic status: bit 2 of it is the link, bit 5 the completed negotiation.
int mii_mgr(camera_state& state, const words& /*command*/, program_output& output) {
    output.out = std::string("Get: phy[0].reg[1] = ") + (state.wired ? "786d" : "7849") + "\n";
    return 0;
}

int network_script(camera_state& /*state*/, const words& /*command*/, program_output& /*output*/) {
    return 0;
}

constexpr struct {
    const char* name;
    int (*run)(camera_state& state, const words& command, program_output& output);
} programs[] = {
    {"iwpriv", iwpriv},   {"ifconfig", ifconfig},
    {"ifdown", ifdown},   {"iwgetid", iwgetid},
    {"lsusb", lsusb},     {"mii_mgr", mii_mgr},
    {"udhcpd", udhcpd},   {"wpa_supplicant", wpa_supplicant},
    {"hostapd", hostapd}, {"/etc/rc.d/init.d/network.sh", network_script},
};

} // namespace

words split(const std::string& command) {
    std::istringstream stream(command);
    words result;
    for (std::string word; stream >> word;)
        result.push_back(word);
    return result;
}

int fail(program_output& output, const std::string& message, int status) {
    output.err += message + "\n";
    return status;
}

int run_command(camera_state& state, const std::string& command, program_output& output) {
    words line = split(command);
    if (!line.empty() && line.back() == "&")
        line.pop_back();
    line.resize(std::max<std::size_t>(line.size(), 4)); // absent arguments are empty ones
    for (const auto& program : programs) {
        if (line[0] == program.name && !lists(state.missing_programs, line[0]))
            return program.run(state, line, output) << 8;
    }
    return fail(output, "sh: " + line[0] + ": not found", 127) << 8;
}
