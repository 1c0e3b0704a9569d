// SPDX-License-Identifier: MIT OR GPL-2.0-only
// A push-button session of the MediaTek/Ralink radio.

#include "vcamera/model/mtk_wps.h"

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
        if (air->points[i].gone || !air->points[i].button ||
            (air->points[i].mhz >= 5000) != five_ghz)
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

int32_t mtk_wps_status(struct mtk_wps* wps, int vif) {
    if (wps->vif != vif)
        return courses[UNUSED][0];
    const int32_t* status = &courses[wps->course][wps->step];
    if (status[1] != 0)
        ++wps->step;
    return status[0];
}

struct security_word {
    int bits;
    const char* text;
};

/* By strength; the last one is always there. */
static const struct security_word auth_words[] = {
    {AIR_WPA | AIR_WPA2, "WPAPSKWPA2PSK"},
    {AIR_WPA2, "WPA2PSK"},
    {AIR_WPA, "WPAPSK"},
    {AIR_WEP, "SHARED"},
    {0, "OPEN"},
};
static const struct security_word cipher_words[] = {
    {AIR_TKIP | AIR_AES, "TKIPAES"},
    {AIR_AES, "AES"},
    {AIR_TKIP, "TKIP"},
    {AIR_RC4, "WEP"},
    {0, "NONE"},
};

/* The first word of each table is that of a mixture. */
static const char* find_word(const struct security_word* words, int bits, int mixed) {
    if (!mixed)
        ++words;
    while ((words->bits & bits) != words->bits)
        ++words;
    return words->text;
}

size_t mtk_wps_profile(const struct access_point* point, int form, char* text, size_t room) {
    const int mixed = form & MTK_PROFILE_MIXED;
    const char* const end = form & MTK_PROFILE_BLANK_LINES ? "\n\n" : "\n";
    char ssid[AIR_SSID_MAX + 1] = "";
    for (int i = 0; i < point->ssid_length; ++i)
        ssid[i] = (char)point->ssid[i];
    const char* const lines[][3] = {
        {"WSC profile", "", end},
        {"SSID = ", ssid, end},
        {"AuthMode = ", find_word(auth_words, point->security, mixed), end},
        {"EncrypType = ", find_word(cipher_words, point->cipher, mixed), end},
        {"KeyIndex = ", "1", end},
        {point->key[0] != '\0' ? "Key = " : "", point->key, point->key[0] != '\0' ? end : ""},
        {form & MTK_PROFILE_TRAILER ? "Profiles = 1\nend of profile\n" : "", "", ""},
    };
    size_t length = 0;
    for (size_t i = 0; i < sizeof lines / sizeof lines[0][0]; ++i) {
        for (const char* from = lines[i / 3][i % 3]; *from != '\0' && length < room; ++from)
            text[length++] = *from;
    }
    return length;
}
