#include "crowd.h"

#include <fstream>
#include <string>
#include <vector>

#include <sys/ioctl.h>
#include <unistd.h>

#include "libwlan/wlan.h"
#include "shell.h"

namespace {

constexpr int long_elements = 3; // hostapd tells the kernel of them four times over, in one page
constexpr std::size_t element_body = 250;

/// Vendor-specific elements, in hexadecimal.
std::string elements() {
    std::string text;
    for (int i = 0; i < long_elements; ++i)
        text += "ddfa" + std::string(2 * element_body, '5');
    return text;
}

} // namespace

crowd::crowd() {
    std::ofstream config("/run/crowd.conf");
    config << "interface=wlan6\ndriver=nl80211\nhw_mode=g\nchannel=3\nbssid=02:00:00:00:06:00\n";
    for (int i = 0; i < size; ++i) {
        if (i > 0)
            config << "bss=wlan6_" << i << "\n";
        config << "ssid=Crowd " << i << "\nvendor_elements=" << elements() << "\n";
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
