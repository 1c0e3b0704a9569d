// SPDX-License-Identifier: MIT
// A radio full of neighbours.

#include "crowd.h"

#include <fstream>
#include <string>
#include <vector>

#include <sys/ioctl.h>
#include <unistd.h>

#include "libwlan/wlan.h"
#include "shell.h"

namespace {

/// A vendor-specific element of 250 bytes, in hexadecimal. hostapd tells the kernel of each network
/// four times over, in one page: there is room for three elements.
const std::string element = "ddfa" + std::string(500, '5');

} // namespace

crowd::crowd() {
    std::ofstream config("/run/crowd.conf");
    config << "interface=wlan6\ndriver=nl80211\nhw_mode=g\nchannel=3\nbssid=02:00:00:00:06:00\n";
    for (int i = 0; i < size; ++i) {
        if (i > 0)
            config << "bss=wlan6_" << i << "\n";
        config << "ssid=Crowd " << i << "\nvendor_elements=" << element << element << element
               << "\n";
    }
    config.close();
    output_of("hostapd.debian -B -P /run/crowd.pid /run/crowd.conf >/dev/console");
}

crowd::~crowd() {
    output_of("kill $(cat /run/crowd.pid)");
}

int scan_results_size() {
    std::vector<char> room(0xFFFF);
    iwreq request{{"wlan0"}, {}};
    request.u.data.pointer = room.data();
    request.u.data.length = 0xFFFF;
    const int channel = socket(AF_INET, SOCK_DGRAM, 0);
    const int result = ioctl(channel, SIOCGIWSCAN, &request);
    close(channel);
    return result == 0 ? request.u.data.length : 0;
}
