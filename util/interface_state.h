#pragma once

// Interface flags of the kernel.

#include "util/wireless_request.h"

/// Reads the flags of `ifname` into `request`. A name that is too long for any interface fails as
/// one that the kernel does not know.
/// @return the result of the ioctl.
int read_interface_flags(int sock, const char* ifname, ifreq& request);
