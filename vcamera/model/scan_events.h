// SPDX-License-Identifier: MIT
// The results of a scan as the events of Wireless Extensions, laid out as on the camera's 32-bit
// processor whatever this host is.

#pragma once

#include <string>

#include "vcamera/model/realtek_radio.h"

/// @param vendor_bytes how much every beacon carries that nobody reads.
std::string scan_events(const air& air, frequency_form frequencies, int vendor_bytes);

/// The information elements of an access point's beacon.
std::string beacon_elements(const access_point& point, int vendor_bytes);
