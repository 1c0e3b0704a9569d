// SPDX-License-Identifier: MIT
// How commands and questions reach the MediaTek/Ralink driver.

#include "mtk/driver.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/message.h"
#include "base/program.h"
#include "base/text.h"

using namespace libwlan;

// Interface and prefix may fill their 64 characters without a terminator, so they are always read
// with that limit.

namespace libwlan::mtk {

int ask_driver(wlan& radio, unsigned long number, const char* ifname, void* data, std::size_t size,
               __u16 flags) {
    radio.request = data_request(ifname, data, size, flags);
    return wireless_ioctl(radio.sock, number, radio.request);
}

int send_command(wlan& radio, const char* prefix, const char* format, ...) {
    const std::size_t length = strnlen(prefix, sizeof radio.prefix);
    std::memcpy(radio.command, prefix, length);
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(radio.command + length, sizeof radio.command - length, format, arguments);
    va_end(arguments);
    return radio.simple_set_private(radio.command);
}

} // namespace libwlan::mtk

int wlan::simple_set_private(char* text) {
    if (text == nullptr)
        return -1;
    console = open_console();
    trace(console, debug_level, "iwpriv %.64s set %s", ifname, text);

    // The driver wants no terminator here.
    return mtk::ask_driver(*this, mtk::driver_set, ifname, text, std::strlen(text));
}

int wlan::command_set_private(char* text) {
    if (text == nullptr)
        return 0;
    if (debug_level != 0)
        std::fprintf(stderr, "iwpriv %.64s set %s\n", ifname, text);
    char line[512];
    cut_text(line, sizeof line, "iwpriv %.64s set %s", ifname, text);
    run_program(line);
    return 0;
}

int wlan::ifconfig(char* interface, char* arguments) {
    if (interface == nullptr || arguments == nullptr)
        return -1;
    char line[64];
    cut_text(line, sizeof line, "ifconfig %s %s", interface, arguments);
    if (debug_level != 0)
        std::fprintf(stderr, "%s\n", line);
    return run_program(line);
}
