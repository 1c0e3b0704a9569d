// SPDX-License-Identifier: MIT
// Turning the raw results of a scan into a survey list.

#pragma once

#include <vector>

#include "libwlan/scan.h"

namespace libwlan::realtek {

/// Appends the usable ones of `count` raw results to `list`.
/// @param maximum_quality what the driver calls the best quality.
/// @return how many passed the filters, also those that the list did not take.
int convert_scan_results(const scan_result_t* results, int count, int maximum_quality,
                         WIRELESS_MODE filter, std::vector<sites>& list);

} // namespace libwlan::realtek
