// SPDX-License-Identifier: MIT
/// @file
/// Baseband registers of a MediaTek/Ralink adapter; Realtek adapters have no counterpart.

#pragma once

#include "libwlan/api.h"

extern "C" {

/// Changes bits of one baseband register on an object of its own, as wlan::do_set_bbp() does.
/// @param ifname interface, of up to 15 characters.
/// @param reg the register as the driver writes it ("66"), of up to 255 characters.
/// @param value the new bits, in the places that they have in the register.
/// @param mask a bit of 1 for each bit of the register to change.
/// @return 0 or -1. A failure of the driver is told on standard output and leaves one socket open.
LIBWLAN_API int run_set_bbp(char* ifname, char* reg, int value, int mask);
}
