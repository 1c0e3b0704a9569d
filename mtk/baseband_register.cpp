#include <cstdio>
#include <cstring>
#include <optional>

#include <sys/ioctl.h>

#include "libwlan/wlan.h"
#include "mtk/bbp_answer.h"
#include "util/cut_text.h"
#include "util/driver_requests.h"
#include "util/text_field.h"
#include "util/wireless_request.h"

namespace {

constexpr std::size_t text_size = 256; // holds a request, then the driver's answer

/// Hands `text` to the driver, terminator included; a register alone is read, and the answer takes
/// the text's place.
int access_register(int sock, const char* ifname, char (&text)[text_size]) {
    iwreq request = named_request(ifname);
    request.u.data.pointer = text;
    request.u.data.length = static_cast<__u16>(std::strlen(text) + 1);
    return ioctl(sock, driver_baseband, &request);
}

/// For a write, too: those who watch the output know this text only.
int failed(int status) {
    std::puts("\nrtuser::error::get bbp register\n");
    return status;
}

} // namespace

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
    const std::optional<unsigned int> current = read_bbp_answer(text);
    if (!current)
        return failed(-1);

    const auto bits = static_cast<unsigned int>(mask);
    const unsigned int wanted = (*current & ~bits) | (static_cast<unsigned int>(value) & bits);
    cut_text(text, sizeof text, "%s=%x", reg, wanted);
    if (const int status = access_register(sock, interface, text); status != 0)
        return failed(status);
    return 0;
}
