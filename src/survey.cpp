// SPDX-License-Identifier: MIT
// Surveys of the air: one request on a fresh object of the adapter's family.

#include "libwlan/survey.h"

#include "driver_request.h"
#include "libwlan/modes.h"
#include "libwlan/wext.h"
#include "libwlan/wlan.h"

using libwlan::run_request;

int run_site_survey(std::vector<sites>& list) {
    return isMtkWifi() ? run_site_survey_mtk(list) : run_site_survey_realtek(list);
}

int run_site_survey_mtk(std::vector<sites>& list) {
    return run_request<wlan>([&](wlan& radio) { return radio.do_site_survey(list, true); });
}

int run_site_survey_realtek(std::vector<sites>& list) {
    constexpr bool stop_supplicant = false;
    return run_request<wext>([&](wext& radio) { return radio.do_site_survey(list); },
                             stop_supplicant);
}
