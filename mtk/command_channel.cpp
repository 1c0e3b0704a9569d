#include <cstdio>
#include <cstring>

#include <sys/socket.h>
#include <unistd.h>

#include "libwlan/wlan.h"
#include "mtk/ask_driver.h"
#include "util/console_trace.h"
#include "util/cut_text.h"
#include "util/debug_level.h"
#include "util/driver_requests.h"
#include "util/program.h"
#include "util/text_field.h"

// Interface and prefix may fill their 64 characters without a terminator, so they are always
// formatted with that precision.

wlan::wlan() = default; // all but the socket is init()'s and the settings' business

wlan::~wlan() = default; // a failed request leaves its socket open: callers count on it

int wlan::open_socket() {
    return socket(AF_INET, SOCK_DGRAM, 0);
}

int wlan::init() {
    debug_level = read_debug_level().value_or(0);
    sock = open_socket();
    if (sock < 0) {
        std::perror("iw_socket");
        return -1;
    }
    site_survey_v2 = 0;
    return 0;
}

int wlan::release() {
    if (sock > 0) // descriptor 0 is not the library's to close
        close(sock);
    sock = -1;
    return 0;
}

int wlan::set_interface(char* name) {
    if (name == nullptr)
        return -1;
    fill_field(ifname, name);
    return 0;
}

int wlan::set_prefix(char* text) {
    if (text == nullptr)
        return -1;
    fill_field(prefix, text);
    return 0;
}

int wlan::simple_set_private(char* text) {
    if (text == nullptr)
        return -1;
    console = open_console();
    trace(console, debug_level, "iwpriv %.64s set %s", ifname, text);

    // The driver wants no terminator here.
    return ask_driver(*this, driver_set, ifname, text, std::strlen(text));
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
