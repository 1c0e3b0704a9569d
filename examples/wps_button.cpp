// SPDX-License-Identifier: MIT
// What a camera does when its WPS button is pressed: joins the network whose access point had its
// button pressed, too, and keeps it.

#include <cstdio>

#include <unistd.h>

#include <libwlan/libwlan.h>

namespace {

constexpr int only_interface = 0;
constexpr int patience = 120; // seconds that an access point listens after its button was pressed

bool obtain_network(wlan& radio) {
    if (radio.do_wps(only_interface) != 0)
        return false;
    for (int second = 0; second < patience; ++second) {
        sleep(1);
        if (radio.does_it_finish(only_interface) == 1)
            return true;
    }
    std::fprintf(stderr, "wps_button: no network within %d seconds\n", patience);
    return false;
}

bool keep_network(wlan& radio) {
    char interface[] = "wlan0";
    const int result = radio.update_wsc_to_db_and_action(interface);
    if (result != 0) {
        std::fprintf(stderr, "wps_button: storing the network: failed with %d\n", result);
        return false;
    }
    radio.does_network_need_to_act(); // has the camera's network script go on, unless a cable is in
    return true;
}

} // namespace

int main() {
    if (isMtkWifi() == 0) {
        std::fputs("wps_button: this adapter does no push-button WPS\n", stderr);
        return 1;
    }
    wlan radio;
    if (radio.init_wps() != 0)
        return 1;
    const bool kept = obtain_network(radio) && keep_network(radio);
    radio.stop_wps(only_interface); // or the driver goes on looking
    radio.release_wps();
    return kept ? 0 : 1;
}
