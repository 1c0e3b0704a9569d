#include <cstdint>
#include <cstdio>
#include <iterator>

#include "libwlan/wlan.h"
#include "mtk/ask_driver.h"
#include "mtk/interfaces.h"
#include "util/cut_text.h"
#include "util/driver_requests.h"

namespace {

constexpr __u16 status_query = 0x0751;
constexpr std::int32_t configured = 34;

using status_name = char[64];

// The driver's names of its status codes, from 0 on.
constexpr status_name session_names[] = {
    "STATUS_WSC_NOTUSED",
    "STATUS_WSC_IDLE",
    "STATUS_WSC_FAIL",
    "STATUS_WSC_LINK_UP",
    "STATUS_WSC_EAPOL_START_RECEIVED",
    "STATUS_WSC_EAP_REQ_ID_SENT",
    "STATUS_WSC_EAP_RSP_ID_RECEIVED",
    "STATUS_WSC_EAP_RSP_WRONG_SMI",
    "STATUS_WSC_EAP_RSP_WRONG_VENDOR_TYPE",
    "STATUS_WSC_EAP_REQ_WSC_START",
    "STATUS_WSC_EAP_M1_SENT",
    "STATUS_WSC_EAP_M1_RECEIVED",
    "STATUS_WSC_EAP_M2_SENT",
    "STATUS_WSC_EAP_M2_RECEIVED",
    "STATUS_WSC_EAP_M2D_RECEIVED",
    "STATUS_WSC_EAP_M3_SENT",
    "STATUS_WSC_EAP_M3_RECEIVED",
    "STATUS_WSC_EAP_M4_SENT",
    "STATUS_WSC_EAP_M4_RECEIVED",
    "STATUS_WSC_EAP_M5_SENT",
    "STATUS_WSC_EAP_M5_RECEIVED",
    "STATUS_WSC_EAP_M6_SENT",
    "STATUS_WSC_EAP_M6_RECEIVED",
    "STATUS_WSC_EAP_M7_SENT",
    "STATUS_WSC_EAP_M7_RECEIVED",
    "STATUS_WSC_EAP_M8_SENT",
    "STATUS_WSC_EAP_M8_RECEIVED",
    "STATUS_WSC_EAP_RAP_RSP_ACK",
    "STATUS_WSC_EAP_RAP_REQ_DONE_SENT",
    "STATUS_WSC_EAP_RAP_RSP_DONE_SENT",
    "STATUS_WSC_EAP_FAIL_SENT",
    "STATUS_WSC_ERROR_HASH_FAIL",
    "STATUS_WSC_ERROR_HMAC_FAIL",
    "STATUS_WSC_ERROR_DEV_PWD_AUTH_FAIL",
    "STATUS_WSC_CONFIGURED",
    "STATUS_WSC_SCAN_AP",
    "STATUS_WSC_EAPOL_START_SENT",
    "STATUS_WSC_EAP_RSP_DONE_SENT",
    "STATUS_WSC_WAIT_PIN_CODE",
    "STATUS_WSC_START_ASSOC",
    "STATUS_WSC_IBSS_WAIT_NEXT_SMPBC_ENROLLEE",
    "STATUS_WSC_IBSS_NEW_RANDOM_PIN",
    "STATUS_WSC_IBSS_FIXED_PIN",
};

// And from 256 on, of what ends a session. 256 itself is no status.
constexpr std::int32_t first_end = 256;
constexpr status_name end_names[] = {
    "NULL",
    "STATUS_WSC_PBC_TOO_MANY_AP",
    "STATUS_WSC_PBC_NO_AP",
    "STATUS_WSC_EAP_FAIL_RECEIVED",
    "STATUS_WSC_EAP_NONCE_MISMATCH",
    "STATUS_WSC_EAP_INVALID_DATA",
    "STATUS_WSC_PASSWORD_MISMATCH",
    "STATUS_WSC_EAP_REQ_WRONG_SMI",
    "STATUS_WSC_EAP_REQ_WRONG_VENDOR_TYPE",
    "STATUS_WSC_PBC_SESSION_OVERLAP",
    "STATUS_WSC_SMPBC_TOO_MANY_REGISTRAR",
    "STATUS_WSC_EMPTY_IPV4_SUBMASK_LIST",
    "STATUS_WSC_SMPBC_NO_AP",
    "STATUS_WSC_PIN_NO_AP",
};

static_assert(std::size(session_names) == 43);
static_assert(std::size(end_names) == 14);

/// The code's name, or its number when it has none.
void name_status(std::int32_t code, char* name, std::size_t size) {
    if (code >= 0 && code < std::int32_t{std::size(session_names)})
        cut_text(name, size, "%s", session_names[code]);
    else if (code > first_end && code < first_end + std::int32_t{std::size(end_names)})
        cut_text(name, size, "%s", end_names[code - first_end]);
    else
        cut_text(name, size, "%d", code);
}

} // namespace

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
    status_name name;
    name_status(code, name, sizeof name);
    std::printf("%s: WSC status:[%s]\n", ifname, name);
    return code == configured ? 1 : 0;
}
