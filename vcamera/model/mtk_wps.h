/* SPDX-License-Identifier: MIT OR GPL-2.0-only */
/* A push-button session of the MediaTek/Ralink radio, for the radio alone. C, like it. */

#pragma once

#include "vcamera/model/air.h"

enum mtk_wps_outcome { MTK_WPS_WORKS, MTK_WPS_FAILS, MTK_WPS_STALLS };

/* Bits: how the driver prints a profile, beyond one line for each setting. */
enum mtk_profile_form {
    MTK_PROFILE_BLANK_LINES = 1, /* between the settings */
    MTK_PROFILE_TRAILER = 2,     /* more lines after the settings */
    MTK_PROFILE_MIXED = 4,       /* all that the access point offers, not only the strongest */
};

struct mtk_wps {
    uint8_t outcome;      /* how a session ends, unless the buttons decide that */
    uint8_t profile_form; /* of enum mtk_profile_form */
    uint8_t course;       /* of the status, from the start of the session on */
    uint8_t step;
    uint8_t vif;   /* the AP-client that the session is for */
    int32_t point; /* number, from 1, of the access point whose button is pressed */
};

void mtk_wps_begin(struct mtk_wps* wps, const struct air* air, int vif, int five_ghz);

void mtk_wps_end(struct mtk_wps* wps);

/* Whether the interface joins what the session says, and nothing else. */
int mtk_wps_holds(const struct mtk_wps* wps, int vif);

/* The number of the access point that a session joined; 0 before that. */
int32_t mtk_wps_joined(const struct mtk_wps* wps);

/* The status as the driver numbers it: 0 on an interface that had no session. The exchange goes on
   between one look and the next. */
int32_t mtk_wps_status(struct mtk_wps* wps, int vif);

/* Prints what an access point hands over. Returns the length; there is no NUL at its end. */
size_t mtk_wps_profile(const struct access_point* point, int form, char* text, size_t room);
