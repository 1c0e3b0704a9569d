#pragma once

// The results of a scan as the events of Wireless Extensions, laid out as on the camera's 32-bit
// processor whatever this host is.

#include <string>

#include "sim/air.h"

/// @param vendor_bytes how much every beacon carries that nobody reads.
std::string scan_events(const air& air, int vendor_bytes);
