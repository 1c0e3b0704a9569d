// SPDX-License-Identifier: MIT
// The driver object of a MediaTek/Ralink adapter: its beginning, its end and where its commands go.

#include "libwlan/wlan.h"

#include <cstdio>

#include "base/message.h"
#include "base/text.h"
#include "base/wireless_ioctl.h"

using namespace libwlan;

wlan::wlan() = default; // all but the socket is init()'s and the settings' business

wlan::~wlan() = default; // part of the interface: a failed request leaves its socket open

int wlan::open_socket() {
    return open_request_socket();
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
    close_request_socket(sock);
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
