// SPDX-License-Identifier: MIT
// The security elements of a scanned network.

#pragma once

#include "base/byte_reader.h"

namespace libwlan::realtek {

/// Reads a whole WPA vendor element, printing it as masked diagnostics.
/// @return its security bits. Suites that the element counts but does not hold are left out.
unsigned int read_wpa_element(byte_reader element);

/// Reads a whole RSN element in the same way.
unsigned int read_rsn_element(byte_reader element);

} // namespace libwlan::realtek
