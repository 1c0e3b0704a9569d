// SPDX-License-Identifier: MIT
// Private requests of the MediaTek/Ralink driver, numbered from the first private request of
// Wireless Extensions.

#pragma once

#include <cstddef>

#include "base/wireless_ioctl.h"
#include "libwlan/wlan.h"

namespace libwlan::mtk {

constexpr unsigned long driver_query = SIOCIWFIRSTPRIV + 0x01;       // query code in the flags
constexpr unsigned long driver_set = SIOCIWFIRSTPRIV + 0x02;         // Key=Value text
constexpr unsigned long driver_baseband = SIOCIWFIRSTPRIV + 0x03;    // register, or register=value
constexpr unsigned long driver_wps_profile = SIOCIWFIRSTPRIV + 0x09; // network obtained, as text
constexpr unsigned long driver_survey = SIOCIWFIRSTPRIV + 0x0D;      // survey table as text

static_assert(driver_query == 0x8BE1);
static_assert(driver_set == 0x8BE2);
static_assert(driver_baseband == 0x8BE3);
static_assert(driver_wps_profile == 0x8BE9);
static_assert(driver_survey == 0x8BED);

/// Puts a private request with `size` bytes of data to the driver, through the radio's own request.
/// @param flags what the request is about, where its number alone does not say.
/// @return the driver's result.
int ask_driver(wlan& radio, unsigned long number, const char* ifname, void* data, std::size_t size,
               __u16 flags = 0);

/// Formats one Key=Value command into the radio's command text and sends it; what does not fit is
/// cut off.
/// @param prefix in front of the key; 64 characters at most are taken.
/// @return the driver's result.
__attribute__((format(printf, 3, 4))) int send_command(wlan& radio, const char* prefix,
                                                       const char* format, ...);

} // namespace libwlan::mtk
