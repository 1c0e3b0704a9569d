#pragma once

/// @file
/// What is in the air. Surveys append to the caller's list and never clear it; the order of the
/// result depends on the adapter family.

#include <vector>

#include "libwlan/api.h"
#include "libwlan/sites.h"

extern "C" {

/// Surveys the air with whichever adapter is plugged in, as the call of its family does.
/// @return 0 or -1.
LIBWLAN_API int run_site_survey(std::vector<sites>& list);

/// Triggers a scan on a MediaTek adapter, waits 4 seconds, reads the driver's table and rewrites
/// /tmp/ap_list. A version-2 table is listed strongest first and once per name.
/// @return 0, also when the driver refused the table; -1 without a socket or when a line of the
/// table was rejected.
LIBWLAN_API int run_site_survey_mtk(std::vector<sites>& list);

/// Scans on a Realtek adapter, waiting up to a minute for the interface and 15 seconds for each of
/// five tries, and lists each name once, in the order of names. A running wpa_supplicant is left
/// alone.
/// @return 0 or -1.
LIBWLAN_API int run_site_survey_realtek(std::vector<sites>& list);
}
