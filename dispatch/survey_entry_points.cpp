#include "dispatch/driver_request.h"
#include "libwlan/modes.h"
#include "libwlan/survey.h"

int run_site_survey(std::vector<sites>& list) {
    return isMtkWifi() ? run_site_survey_mtk(list) : run_site_survey_realtek(list);
}

int run_site_survey_mtk(std::vector<sites>& list) {
    wlan radio;
    if (radio.init() != 0)
        return -1;
    return end_request(radio, radio.do_site_survey(list, true));
}

int run_site_survey_realtek(std::vector<sites>& list) {
    wext radio; // a running wpa_supplicant is left alone
    if (radio.init(false) != 0)
        return -1;
    return end_request(radio, radio.do_site_survey(list));
}
