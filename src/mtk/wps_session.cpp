// SPDX-License-Identifier: MIT
// Push-button sessions of a MediaTek/Ralink adapter, but for what asks the store.

#include <cstdint>
#include <cstdio>

#include "base/text.h"
#include "libwlan/wlan.h"
#include "mtk/driver.h"
#include "mtk/interfaces.h"

using namespace libwlan;
using namespace libwlan::mtk;

namespace {

constexpr __u16 status_query = 0x0751;
constexpr std::int32_t configured = 34;

struct session_status {
    std::int16_t code;
    char name[42];
};

// The driver's names of its status codes. The ones above 256 end a session; 256 itself is none.
constexpr session_status statuses[] = {
    {0, "STATUS_WSC_NOTUSED"},
    {1, "STATUS_WSC_IDLE"},
    {2, "STATUS_WSC_FAIL"},
    {3, "STATUS_WSC_LINK_UP"},
    {4, "STATUS_WSC_EAPOL_START_RECEIVED"},
    {5, "STATUS_WSC_EAP_REQ_ID_SENT"},
    {6, "STATUS_WSC_EAP_RSP_ID_RECEIVED"},
    {7, "STATUS_WSC_EAP_RSP_WRONG_SMI"},
    {8, "STATUS_WSC_EAP_RSP_WRONG_VENDOR_TYPE"},
    {9, "STATUS_WSC_EAP_REQ_WSC_START"},
    {10, "STATUS_WSC_EAP_M1_SENT"},
    {11, "STATUS_WSC_EAP_M1_RECEIVED"},
    {12, "STATUS_WSC_EAP_M2_SENT"},
    {13, "STATUS_WSC_EAP_M2_RECEIVED"},
    {14, "STATUS_WSC_EAP_M2D_RECEIVED"},
    {15, "STATUS_WSC_EAP_M3_SENT"},
    {16, "STATUS_WSC_EAP_M3_RECEIVED"},
    {17, "STATUS_WSC_EAP_M4_SENT"},
    {18, "STATUS_WSC_EAP_M4_RECEIVED"},
    {19, "STATUS_WSC_EAP_M5_SENT"},
    {20, "STATUS_WSC_EAP_M5_RECEIVED"},
    {21, "STATUS_WSC_EAP_M6_SENT"},
    {22, "STATUS_WSC_EAP_M6_RECEIVED"},
    {23, "STATUS_WSC_EAP_M7_SENT"},
    {24, "STATUS_WSC_EAP_M7_RECEIVED"},
    {25, "STATUS_WSC_EAP_M8_SENT"},
    {26, "STATUS_WSC_EAP_M8_RECEIVED"},
    {27, "STATUS_WSC_EAP_RAP_RSP_ACK"},
    {28, "STATUS_WSC_EAP_RAP_REQ_DONE_SENT"},
    {29, "STATUS_WSC_EAP_RAP_RSP_DONE_SENT"},
    {30, "STATUS_WSC_EAP_FAIL_SENT"},
    {31, "STATUS_WSC_ERROR_HASH_FAIL"},
    {32, "STATUS_WSC_ERROR_HMAC_FAIL"},
    {33, "STATUS_WSC_ERROR_DEV_PWD_AUTH_FAIL"},
    {34, "STATUS_WSC_CONFIGURED"},
    {35, "STATUS_WSC_SCAN_AP"},
    {36, "STATUS_WSC_EAPOL_START_SENT"},
    {37, "STATUS_WSC_EAP_RSP_DONE_SENT"},
    {38, "STATUS_WSC_WAIT_PIN_CODE"},
    {39, "STATUS_WSC_START_ASSOC"},
    {40, "STATUS_WSC_IBSS_WAIT_NEXT_SMPBC_ENROLLEE"},
    {41, "STATUS_WSC_IBSS_NEW_RANDOM_PIN"},
    {42, "STATUS_WSC_IBSS_FIXED_PIN"},
    {257, "STATUS_WSC_PBC_TOO_MANY_AP"},
    {258, "STATUS_WSC_PBC_NO_AP"},
    {259, "STATUS_WSC_EAP_FAIL_RECEIVED"},
    {260, "STATUS_WSC_EAP_NONCE_MISMATCH"},
    {261, "STATUS_WSC_EAP_INVALID_DATA"},
    {262, "STATUS_WSC_PASSWORD_MISMATCH"},
    {263, "STATUS_WSC_EAP_REQ_WRONG_SMI"},
    {264, "STATUS_WSC_EAP_REQ_WRONG_VENDOR_TYPE"},
    {265, "STATUS_WSC_PBC_SESSION_OVERLAP"},
    {266, "STATUS_WSC_SMPBC_TOO_MANY_REGISTRAR"},
    {267, "STATUS_WSC_EMPTY_IPV4_SUBMASK_LIST"},
    {268, "STATUS_WSC_SMPBC_NO_AP"},
    {269, "STATUS_WSC_PIN_NO_AP"},
};

/// The code's name, or its number when it has none.
void name_status(std::int32_t code, char* name, std::size_t size) {
    for (const session_status& status : statuses) {
        if (status.code == code)
            return cut_text(name, size, "%s", status.name);
    }
    cut_text(name, size, "%d", code);
}

} // namespace

int wlan::init_wps() {
    ifconfig(wps_interface(0), ifconfig_down);
    return init();
}

int wlan::release_wps() {
    return release();
}

int wlan::set_wsc() {
    // The session is started last, once the AP-client is enabled again.
    int result = enable_apcli(false);
    result |= send_command(*this, no_prefix, "WscConfMode=1"); // enrollee
    result |= send_command(*this, no_prefix, "WscMode=2");     // push button
    result |= enable_apcli(true);
    result |= send_command(*this, no_prefix, "WscGetConf=1");
    return result;
}

int wlan::stop_wps(int index) {
    char* const interface = wps_interface(index);
    if (interface == nullptr)
        return -1;
    set_interface(interface);
    return send_command(*this, no_prefix, "WscStop=1");
}

int wlan::does_it_finish(int index) {
    char* const interface = wps_interface(index);
    if (interface == nullptr)
        return 0;
    std::int32_t code = -1;
    set_interface(interface);
    if (ask_driver(*this, driver_query, ifname, &code, sizeof code, status_query) < 0) {
        std::perror(ifname);
        return 0;
    }
    char name[64];
    name_status(code, name, sizeof name);
    std::printf("%s: WSC status:[%s]\n", ifname, name);
    return code == configured ? 1 : 0;
}
