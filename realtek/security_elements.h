#pragma once

#include "util/byte_view.h"

/// Reads a whole WPA vendor element, printing it as masked diagnostics.
/// @return its security bits. Suites that the element counts but does not hold are left out.
unsigned int read_wpa_element(byte_view element);

/// Reads a whole RSN element in the same way.
unsigned int read_rsn_element(byte_view element);
