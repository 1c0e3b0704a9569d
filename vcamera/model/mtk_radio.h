/* SPDX-License-Identifier: MIT OR GPL-2.0-only */
/* The MediaTek/Ralink radio as its driver shows it. Freestanding C, like the air. */

#pragma once

#include "vcamera/model/air.h"
#include "vcamera/model/mtk_wps.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The driver's interfaces: "ra0", and the AP-clients "wlan0" and "apclii0". */
enum mtk_vif_number { MTK_AP, MTK_CLIENT_2G, MTK_CLIENT_5G, MTK_VIFS };

/* What the driver keeps of the commands that it was given. */
enum mtk_key {
    MTK_AUTH_MODE,
    MTK_ENCRYP_TYPE,
    MTK_WPAPSK,
    MTK_SSID,
    MTK_BSSID,
    MTK_DEFAULT_KEY_ID,
    MTK_KEY_1,
    MTK_KEY_2,
    MTK_KEY_3,
    MTK_KEY_4,
    MTK_CHANNEL,
    MTK_COUNTRY_REGION,
    MTK_COUNTRY_REGION_A,
    MTK_RADIO_ON,
    MTK_AUTO_CHANNEL,
    MTK_ENABLE,
    MTK_AUTO_CONNECT,
    MTK_8021X,
    MTK_MIX_PAIR_CIPHER,
    MTK_SITE_SURVEY,
    MTK_WSC_CONF_MODE,
    MTK_WSC_MODE,
    MTK_WSC_GET_CONF,
    MTK_WSC_STOP,
    MTK_KEYS
};

enum {
    MTK_VALUE_MAX = 256,
    MTK_NOISE = -95,
    MTK_REGISTERS = 256,
    MTK_REGISTER_TEXT = 23,
    MTK_SCAN_TIME = 3000 /* milliseconds */
};

/* Errno numbers differ between architectures; who carries this model has its own for these. */
enum mtk_answer { MTK_DONE, MTK_INVALID, MTK_DOWN };

struct mtk_vif {
    uint8_t up;
    uint8_t scans;       /* all channels for its network, instead of staying on one */
    int32_t joined;      /* number, from 1, of the access point in the air; 0 for none */
    int64_t survey_over; /* when its last survey is, in milliseconds; 0 without a survey */
    char key_ssid[AIR_SSID_MAX + 1]; /* from which, and its passphrase, its key was derived */
    char values[MTK_KEYS][MTK_VALUE_MAX];
};

enum mtk_band { MTK_2G, MTK_5G, MTK_BANDS };

struct mtk_radio {
    struct mtk_vif vifs[MTK_VIFS];
    int32_t channels[MTK_BANDS]; /* as last told or joined; 0 before that */
    uint8_t survey_layout;       /* version of the table's columns: 1 or 2 */
    struct mtk_wps wps;
    uint32_t registers[MTK_REGISTERS]; /* of the baseband processor */
};

void mtk_radio_bring(struct mtk_radio* radio, const struct air* air, int vif, int up);

/* Leaves the access points that have gone from the air. */
void mtk_radio_leave_gone(struct mtk_radio* radio, const struct air* air);

/* Private request "set": one Key=Value text, without a NUL.
   `now` is the caller's clock in milliseconds, here and below. */
enum mtk_answer mtk_radio_set(struct mtk_radio* radio, const struct air* air, int vif,
                              const char* text, size_t length, int64_t now);

/* Private request "query": a 32-bit figure by its code. */
enum mtk_answer mtk_radio_query(struct mtk_radio* radio, const struct air* air, int vif, int code,
                                int32_t* answer);

/* Whether the interface's last survey is over. Until then its table is empty. */
int mtk_radio_surveyed(const struct mtk_radio* radio, int vif, int64_t now);

/* Private request "survey": the table of the interface's last survey as text, without a NUL.
   `length` is the room for it, and becomes its length. */
enum mtk_answer mtk_radio_survey(const struct mtk_radio* radio, const struct air* air, int vif,
                                 int64_t now, char* text, size_t* length);

/* Private request "profile": the network that push-button set-up obtained on the interface,
   likewise. */
enum mtk_answer mtk_radio_profile(const struct mtk_radio* radio, const struct air* air, int vif,
                                  char* text, size_t* length);

/* Private request "register": "66" reads a register of the baseband processor and "66=4f" writes
   one, all in hexadecimal and with the NUL. What it holds then takes the text's place, whatever its
   length. */
enum mtk_answer mtk_radio_register(struct mtk_radio* radio, char text[MTK_REGISTER_TEXT],
                                   size_t length);

/* Level in dBm of what the chip receives. */
int mtk_radio_level(const struct mtk_radio* radio, const struct air* air);

int mtk_radio_channel(const struct mtk_radio* radio, int vif);

#ifdef __cplusplus
}
#endif
