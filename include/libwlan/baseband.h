#pragma once

/// @file
/// Baseband registers of a MediaTek/Ralink adapter; Realtek adapters have no counterpart.

#include "libwlan/api.h"

extern "C" {

/// Changes the bits of a baseband register that `mask` selects to those of `value`.
/// @param ifname interface, of up to 15 characters.
/// @param reg the register as the driver writes it ("66").
/// @return 0 or -1. The driver's failure is told on standard output, and leaves one socket open.
LIBWLAN_API int run_set_bbp(char* ifname, char* reg, int value, int mask);
}
