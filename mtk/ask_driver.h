#pragma once

#include "libwlan/wlan.h"

/// Puts a private request with `size` bytes of data to the driver, through the radio's own request.
/// @param flags what the request is about, where its number alone does not say.
/// @return the driver's result.
int ask_driver(wlan& radio, unsigned long number, const char* ifname, void* data, std::size_t size,
               __u16 flags = 0);
