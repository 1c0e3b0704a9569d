// SPDX-License-Identifier: MIT
/// @file
/// What is in the air. Surveys append to the caller's list and never clear it; the order of the
/// result, with what the list held before, depends on the adapter family.

#pragma once

#include <vector>

#include "libwlan/api.h"
#include "libwlan/sites.h"

extern "C" {

/// Surveys the air with whichever adapter is plugged in, as the call of its family does.
/// @return as that call.
LIBWLAN_API int run_site_survey(std::vector<sites>& list);

/// Triggers a scan on a MediaTek adapter, waits 4 seconds, reads the driver's table and rewrites
/// /tmp/ap_list, as wlan::do_site_survey() does. A version-2 table is listed strongest first and
/// once per name; a version-1 table in the driver's order.
/// @return 0, also when the driver refused the table; -1 without a socket, or when a line of the
///         table was rejected, with all others listed. That leaves one socket open.
LIBWLAN_API int run_site_survey_mtk(std::vector<sites>& list);

/// Scans on a Realtek adapter, as wext::do_site_survey() does, and lists each name once, in the
/// order of names. Networks with WEP only are left out. Blocks for 60 seconds at most until the
/// interface is up and 76 until there are results. A running wpa_supplicant is left alone.
/// @return 0 or -1; -1 leaves one socket open.
LIBWLAN_API int run_site_survey_realtek(std::vector<sites>& list);
}
