#pragma once

#include "libwlan/wlan.h"

/// Formats one Key=Value command into the radio's command text and sends it; what does not fit is
/// cut off.
/// @return the driver's result.
__attribute__((format(printf, 2, 3))) int send_command(wlan& radio, const char* format, ...);
