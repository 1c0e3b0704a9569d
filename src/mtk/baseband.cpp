// SPDX-License-Identifier: MIT
// Baseband registers.

#include "libwlan/baseband.h"

#include <cstdio>
#include <cstring>
#include <optional>

#include "base/text.h"
#include "driver_request.h"
#include "libwlan/wlan.h"
#include "mtk/driver.h"
#include "mtk/driver_answers.h"

using namespace libwlan;

namespace {

constexpr std::size_t text_size = 256; // holds a request, then the driver's answer

/// Hands `text` to the driver, terminator included; a register alone is read, and the answer takes
/// the text's place.
int access_register(int sock, const char* ifname, char (&text)[text_size]) {
    iwreq request = data_request(ifname, text, std::strlen(text) + 1);
    return wireless_ioctl(sock, mtk::driver_baseband, request);
}

/// Tells of a failure, of a write with the same words, which are part of the interface.
int failed(int status) {
    std::puts("\nrtuser::error::get bbp register\n");
    return status;
}

} // namespace

int run_set_bbp(char* ifname, char* reg, int value, int mask) {
    return run_request<wlan>(
        [=](wlan& radio) { return radio.do_set_bbp(ifname, reg, value, mask); });
}

int wlan::do_set_bbp(char* interface, char* reg, int value, int mask) {
    if (interface == nullptr || std::strlen(interface) >= IFNAMSIZ)
        return -1;
    if (reg == nullptr || std::strlen(reg) >= text_size)
        return -1;
    char text[text_size];
    fill_field(text, reg);
    if (const int status = access_register(sock, interface, text); status != 0)
        return failed(status);
    text[text_size - 1] = '\0';
    const std::optional<unsigned int> current = mtk::read_bbp_answer(text);
    if (!current)
        return failed(-1);

    const auto bits = static_cast<unsigned int>(mask);
    const unsigned int wanted = (*current & ~bits) | (static_cast<unsigned int>(value) & bits);
    cut_text(text, sizeof text, "%s=%x", reg, wanted);
    if (const int status = access_register(sock, interface, text); status != 0)
        return failed(status);
    return 0;
}
