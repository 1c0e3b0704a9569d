// SPDX-License-Identifier: MIT
/// @file
/// Raw scan results of a Realtek adapter and the security elements in them. Nothing here keeps
/// state; the functions wait for nothing, and pointers are not null unless stated otherwise.

#pragma once

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
    WIRELESS_MODE mode;       ///< what kind of station sent it; 0 when it did not tell
    unsigned char ssid[32];   ///< no terminator when all 32 bytes are used
    std::int32_t ssid_len;    ///< bytes before the first NUL, 0 to 32
    char bssid[18];           ///< upper-case hexadecimal with colons, NUL-terminated
    unsigned char wpa_ie[80]; ///< whole WPA vendor element, of up to 40 bytes
    std::int32_t wpa_ie_len;  ///< its bytes, 0 when there was none
    unsigned char rsn_ie[80]; ///< whole RSN element, of up to 40 bytes
    std::int32_t rsn_ie_len;  ///< its bytes, 0 when there was none
    std::int32_t encrypted;   ///< 1 when the network is encrypted, else 0
    std::int32_t freq;        ///< MHz, 0 when the driver's number makes none
    std::int32_t level;       ///< 0 to 255, unconverted
    std::int32_t qual;        ///< link quality, 0 to 255, of the most in the driver's range
};

static_assert(offsetof(scan_result_t, ssid) == 4, "binary interface");
static_assert(offsetof(scan_result_t, ssid_len) == 36, "binary interface");
static_assert(offsetof(scan_result_t, bssid) == 40, "binary interface");
static_assert(offsetof(scan_result_t, wpa_ie) == 58, "binary interface");
static_assert(offsetof(scan_result_t, wpa_ie_len) == 140, "binary interface");
static_assert(offsetof(scan_result_t, rsn_ie) == 144, "binary interface");
static_assert(offsetof(scan_result_t, rsn_ie_len) == 224, "binary interface");
static_assert(offsetof(scan_result_t, encrypted) == 228, "binary interface");
static_assert(offsetof(scan_result_t, qual) == 240, "binary interface");
static_assert(sizeof(scan_result_t) == 244, "binary interface");

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
/// @param bits ::security_bits so far; untouched for an unknown suite.
/// @param name room for 8 bytes: receives "WEP-40", "TKIP", "CCMP", "WEP-104" or "UnKnown".
/// @return 0, or -1 for an unknown suite.
LIBWLAN_API int parse_wpa_oui(unsigned char* suite, int kind, unsigned int* bits, char* name);

/// The same for a suite of an RSN element; nothing is returned.
LIBWLAN_API void parse_rsn_oui(unsigned char* suite, int kind, unsigned int* bits, char* name);

/// Adds the security bits of a whole WPA vendor element. Suites that it counts but does not hold
/// are left out.
/// @param ie two bytes of ID and length, and as many more as the length says.
/// @param bits ::security_bits so far; updated.
/// @return the updated bits.
LIBWLAN_API int parse_wpa_ie(unsigned char* ie, int* bits);

/// The same for a whole RSN element.
LIBWLAN_API int parse_rsn_ie(unsigned char* ie, int* bits);

/// Fills the cipher and authentication texts of `entry` from its security bits.
/// @param log not used.
/// @param entry its `ssid` is compared; only `authentication` and `encryption` are written.
/// @param bits ::security_bits of all its elements.
/// @param mode of the scan result.
/// @param list what is listed so far; not changed.
/// @return 0 when `entry` is to be listed; -1 when it is no access point or its name is listed
///         already, and nothing is written.
LIBWLAN_API int parse_encrypt(FILE* log, sites* entry, int bits, WIRELESS_MODE mode,
                              std::vector<sites>& list);

/// Dumps bytes in rows of 16, each with the low 32 bits of its address.
/// @param out an open stream.
/// @param title NUL-terminated.
/// @param length of `data` in bytes; 0 and less dump a title only.
/// @return the result of the last write.
LIBWLAN_API int dumpHexData(FILE* out, char* title, char* data, int length);
}
