// SPDX-License-Identifier: MIT
// Reading the results of a scan.

#pragma once

#include <cstdio>

#include "base/byte_reader.h"
#include "libwlan/scan.h"

namespace libwlan::realtek {

/// Walks the events of a scan into `results`, which have room for max_scan_results. Pure reading
/// but for one message on `log`; events that do not fit are skipped, and a stream that breaks off
/// ends the walk.
/// @return how many access points were counted, max_scan_results at most.
int walk_scan_events(byte_reader stream, scan_result_t* results, FILE* log);

} // namespace libwlan::realtek
