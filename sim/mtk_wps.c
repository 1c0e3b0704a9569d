#include "sim/mtk_wps.h"

enum course { UNUSED, IDLE, STALLING, FAILING, NOBODY, OVERLAP, JOINING };

enum status { FAIL = 2, CONFIGURED = 34, SCANNING = 35, NO_AP = 258, SESSION_OVERLAP = 265 };

/* The last status of a course stays. */
static const int32_t courses[][20] = {
    [UNUSED] = {0},
    [IDLE] = {1},
    [STALLING] = {SCANNING},
    [FAILING] = {SCANNING, SCANNING, 39, 3, 36, 6, 9, 10, 14, FAIL},
    [NOBODY] = {SCANNING, SCANNING, SCANNING, NO_AP},
    [OVERLAP] = {SCANNING, SCANNING, SESSION_OVERLAP},
    /* Association, identity, then messages M1 to M8 by turns. */
    [JOINING] = {SCANNING, SCANNING, 39, 3, 36, 6, 9, 10, 13, 15, 18, 19, 22, 23, 26, 37,
                 CONFIGURED},
};

void mtk_wps_begin(struct mtk_wps* wps, const struct air* air, int vif, int five_ghz) {
    static const uint8_t by_buttons[] = {NOBODY, JOINING, OVERLAP};
    int pressed = 0;
    for (int i = 0; i < air->count; ++i) {
        if (!air->points[i].button || (air->points[i].mhz >= 5000) != five_ghz)
            continue;
        wps->point = i + 1;
        pressed += pressed < 2;
    }
    wps->course = by_buttons[pressed];
    if (wps->outcome != MTK_WPS_WORKS)
        wps->course = wps->outcome == MTK_WPS_FAILS ? FAILING : STALLING;
    wps->step = 0;
    wps->vif = (uint8_t)vif;
}

void mtk_wps_end(struct mtk_wps* wps) {
    wps->course = IDLE;
    wps->step = 0;
}

int mtk_wps_holds(const struct mtk_wps* wps, int vif) {
    return wps->course > IDLE && wps->vif == vif;
}

int32_t mtk_wps_joined(const struct mtk_wps* wps) {
    return courses[wps->course][wps->step] == CONFIGURED ? wps->point : 0;
}

int32_t mtk_wps_status(struct mtk_wps* wps) {
    const int32_t* status = &courses[wps->course][wps->step];
    if (status[1] != 0)
        ++wps->step;
    return status[0];
}

/* The place of the highest of four bits: the strongest that an access point offers. */
static int strongest(int bits) {
    int place = 3;
    while (place > 0 && (bits >> place & 1) == 0)
        --place;
    return place;
}

size_t mtk_wps_profile(const struct access_point* point, char* text, size_t room) {
    static const char* const auth_names[] = {"OPEN", "SHARED", "WPAPSK", "WPA2PSK"};
    static const char* const cipher_names[] = {"NONE", "WEP", "TKIP", "AES"};
    char ssid[AIR_SSID_MAX + 1] = "";
    for (int i = 0; i < point->ssid_length; ++i)
        ssid[i] = (char)point->ssid[i];
    const char* const lines[][2] = {
        {"WSC profile\nSSID = ", ssid},
        {"\nAuthMode = ", auth_names[strongest(point->security)]},
        {"\nEncrypType = ", cipher_names[strongest(point->cipher)]},
        {"\nKeyIndex = ", "1"},
        {point->key[0] != '\0' ? "\nKey = " : "", point->key},
        {"\n", ""},
    };
    size_t length = 0;
    for (size_t i = 0; i < sizeof lines / sizeof lines[0][0]; ++i)
        for (const char* from = lines[i / 2][i % 2]; *from != '\0' && length < room; ++from)
            text[length++] = *from;
    return length;
}
