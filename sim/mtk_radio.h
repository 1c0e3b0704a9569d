#pragma once

/* The MediaTek/Ralink radio as its driver shows it. Freestanding C, like the air. */

#include "sim/air.h"
#include "sim/mtk_wps.h"

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

enum { MTK_VALUE_MAX = 256, MTK_NOISE = -95, MTK_REGISTERS = 256, MTK_REGISTER_TEXT = 23 };

/* Errno numbers differ between architectures; who carries this model has its own for these. */
enum mtk_answer { MTK_DONE, MTK_INVALID, MTK_DOWN };

struct mtk_vif {
    uint8_t up;
    int32_t joined; /* number, from 1, of the access point in the air; 0 for none */
    char values[MTK_KEYS][MTK_VALUE_MAX];
};

struct mtk_radio {
    struct mtk_vif vifs[MTK_VIFS];
    uint8_t surveyed;      /* there is a table: a survey was asked for */
    uint8_t survey_layout; /* version of its columns: 1 or 2 */
    struct mtk_wps wps;
    uint32_t registers[MTK_REGISTERS]; /* of the baseband processor */
};

void mtk_radio_bring(struct mtk_radio* radio, const struct air* air, int vif, int up);

/* Private request "set": one Key=Value text, with or without its NUL. */
enum mtk_answer mtk_radio_set(struct mtk_radio* radio, const struct air* air, int vif,
                              const char* text, size_t length);

/* Private request "query": a 32-bit figure by its code. */
enum mtk_answer mtk_radio_query(struct mtk_radio* radio, const struct air* air, int code,
                                int32_t* answer);

/* Private request "survey": the table of the last survey as text, without a NUL.
   `length` is the room for it, and becomes its length. */
enum mtk_answer mtk_radio_survey(const struct mtk_radio* radio, const struct air* air, char* text,
                                 size_t* length);

/* Private request "profile": the network that push-button set-up obtained, likewise. */
enum mtk_answer mtk_radio_profile(const struct mtk_radio* radio, const struct air* air, char* text,
                                  size_t* length);

/* Private request "register": "66" reads a register of the baseband processor and "66=4f" writes
   one, all in hexadecimal. What it holds then takes the text's place, whatever its length. */
enum mtk_answer mtk_radio_register(struct mtk_radio* radio, char text[MTK_REGISTER_TEXT],
                                   size_t length);

/* Level in dBm of what the chip receives. */
int mtk_radio_level(const struct mtk_radio* radio, const struct air* air);

int mtk_radio_channel(const struct mtk_radio* radio, const struct air* air, int vif);

#ifdef __cplusplus
}
#endif
