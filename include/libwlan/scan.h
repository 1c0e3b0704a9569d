#pragma once

/// @file
/// Raw scan results of a Realtek adapter and the security elements in them.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "libwlan/api.h"
#include "libwlan/sites.h"

/// Operating mode of a scanned station, and filter.
enum WIRELESS_MODE : std::int32_t {
    WIRELESS_MODE_ADHOC = 0,
    WIRELESS_MODE_INFRA = 1,
    WIRELESS_MODE_MASTER = 2,
    WIRELESS_MODE_REPEATER = 3,
    WIRELESS_MODE_SECONDARY = 4,
    WIRELESS_MODE_MONITOR = 5,
    WIRELESS_MODE_AUTO = 6,
    WIRELESS_MODE_ANY = 7, ///< filter only
};

/// How many access points one scan can report.
constexpr int max_scan_results = 256;

/// One access point as the driver reported it.
struct scan_result_t {
    WIRELESS_MODE mode;       ///< what kind of station sent it
    unsigned char ssid[32];   ///< no terminator when all 32 bytes are used
    std::int32_t ssid_len;    ///< bytes before the first NUL
    char bssid[18];           ///< upper-case hexadecimal with colons
    unsigned char wpa_ie[80]; ///< whole WPA vendor element
    std::int32_t wpa_ie_len;  ///< 0 when there was none
    unsigned char rsn_ie[80]; ///< whole RSN element
    std::int32_t rsn_ie_len;  ///< 0 when there was none
    std::int32_t encrypted;   ///< 1 when the network is encrypted
    std::int32_t freq;        ///< MHz
    std::int32_t level;       ///< 0 to 255, unconverted
    std::int32_t qual;        ///< link quality
};

static_assert(offsetof(scan_result_t, ssid) == 4);
static_assert(offsetof(scan_result_t, ssid_len) == 36);
static_assert(offsetof(scan_result_t, bssid) == 40);
static_assert(offsetof(scan_result_t, wpa_ie) == 58);
static_assert(offsetof(scan_result_t, wpa_ie_len) == 140);
static_assert(offsetof(scan_result_t, rsn_ie) == 144);
static_assert(offsetof(scan_result_t, rsn_ie_len) == 224);
static_assert(offsetof(scan_result_t, encrypted) == 228);
static_assert(offsetof(scan_result_t, qual) == 240);
static_assert(sizeof(scan_result_t) == 244);

/// Security bits of one access point. Each RSN bit is the WPA bit of the same cipher shifted left
/// by 8.
enum security_bits : unsigned int {
    WPA_PARSED = 0x20,
    RSN_PARSED = 0x40,
    WPA_GROUP_TKIP = 0x80,
    WPA_GROUP_CCMP = 0x100,
    WPA_PAIRWISE_TKIP = 0x200,
    WPA_PAIRWISE_CCMP = 0x400,
    WPA_GROUP_WEP40 = 0x800,
    WPA_GROUP_WEP104 = 0x1000,
    WPA_PAIRWISE_WEP40 = 0x2000,
    WPA_PAIRWISE_WEP104 = 0x4000,
    RSN_GROUP_TKIP = 0x8000,
    RSN_GROUP_CCMP = 0x10000,
    RSN_PAIRWISE_TKIP = 0x20000,
    RSN_PAIRWISE_CCMP = 0x40000,
    RSN_GROUP_WEP40 = 0x80000,
    RSN_GROUP_WEP104 = 0x100000,
    RSN_PAIRWISE_WEP40 = 0x200000,
    RSN_PAIRWISE_WEP104 = 0x400000,
};

extern "C" {

/// Names the cipher suite of a WPA element and adds its bit.
/// @param suite four bytes: OUI and type.
/// @param kind 0 group cipher, 1 pairwise cipher; any other kind adds no bit.
/// @param name receives the name, 8 bytes at most.
/// @return 0, or -1 for an unknown suite.
LIBWLAN_API int parse_wpa_oui(unsigned char* suite, int kind, unsigned int* bits, char* name);

/// The same for a suite of an RSN element.
LIBWLAN_API void parse_rsn_oui(unsigned char* suite, int kind, unsigned int* bits, char* name);

/// Adds the security bits of a whole WPA vendor element, as long as its length byte says.
/// @return the updated bits.
LIBWLAN_API int parse_wpa_ie(unsigned char* ie, int* bits);

/// Adds the security bits of a whole RSN element, as long as its length byte says.
/// @return the updated bits.
LIBWLAN_API int parse_rsn_ie(unsigned char* ie, int* bits);

/// Fills the cipher and authentication texts of `entry` from its security bits.
/// @param log not used.
/// @return 0 when `entry` is to be listed; -1 when it is no access point or its name is listed
/// already.
LIBWLAN_API int parse_encrypt(FILE* log, sites* entry, int bits, WIRELESS_MODE mode,
                              std::vector<sites>& list);

/// Dumps bytes in rows of 16.
/// @return the result of the last write.
LIBWLAN_API int dumpHexData(FILE* out, char* title, char* data, int length);
}
