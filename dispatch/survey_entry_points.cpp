#include "dispatch/driver_request.h"
#include "libwlan/modes.h"
#include "libwlan/survey.h"

int run_site_survey(std::vector<sites>& list) {
    return isMtkWifi() ? run_site_survey_mtk(list) : run_site_survey_realtek(list);
}

int run_site_survey_mtk(std::vector<sites>& list) {
    return on_mtk([&](wlan& radio) { return radio.do_site_survey(list, true); });
}

int run_site_survey_realtek(std::vector<sites>& list) {
    wext driver; // a running wpa_supplicant is left alone
    return run_request(driver, driver.init(false),
                       [&](wext& radio) { return radio.do_site_survey(list); });
}
