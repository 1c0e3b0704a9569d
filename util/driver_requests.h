#pragma once

// Private requests of the MediaTek/Ralink driver, numbered from the first private request of
// Wireless Extensions.

#include "util/wireless_request.h"

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
