#include <cstdio>

#include "libwlan/wlan.h"
#include "mtk/interfaces.h"
#include "mtk/send_command.h"

namespace {

/// @return the message of the step that failed, or null.
const char* start_session(wlan& radio, char* interface) {
    if (radio.set_interface(interface) != 0)
        return "set interface failed\n";
    if (radio.set_prefix(apcli_prefix) != 0)
        return "set prefix failed\n";
    if (radio.set_region() != 0)
        return "set region failed\n";
    if (radio.set_wsc() != 0)
        return "set wsc failed\n";
    return nullptr;
}

} // namespace

int wlan::init_wps() {
    ifconfig(wps_interface(0), ifconfig_down);
    return init();
}

int wlan::release_wps() {
    return release();
}

int wlan::do_wps(int index) {
    char* const interface = wps_interface(index);
    if (interface == nullptr)
        return -1;
    ifconfig(interface, ifconfig_down); // the driver is to start from a clean state
    ifconfig(interface, ifconfig_up);
    if (const char* message = start_session(*this, interface)) {
        std::fputs(message, stderr);
        return -1;
    }
    return 0;
}

int wlan::set_wsc() {
    // The session is started last, once the AP-client is enabled again.
    int result = enable_apcli(false);
    result |= send_command(*this, "WscConfMode=1"); // enrollee
    result |= send_command(*this, "WscMode=2");     // push button
    result |= enable_apcli(true);
    result |= send_command(*this, "WscGetConf=1");
    return result;
}

int wlan::stop_wps(int index) {
    char* const interface = wps_interface(index);
    if (interface == nullptr)
        return -1;
    set_interface(interface);
    return send_command(*this, "WscStop=1");
}
