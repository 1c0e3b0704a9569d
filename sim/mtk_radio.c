#include "sim/mtk_radio.h"

#include "sim/mtk_survey.h"

struct word {
    const char* text;
    int bits;
};

/* The first word of each table holds until another is set. */
static const struct word auth_modes[] = {
    {"OPEN", AIR_OPEN | AIR_WEP},
    {"SHARED", AIR_WEP},
    {"WEPAUTO", AIR_WEP},
    {"WPAPSK", AIR_WPA},
    {"WPA2PSK", AIR_WPA2},
    {"WPAPSKWPA2PSK", AIR_WPA | AIR_WPA2},
    {NULL, 0},
};
static const struct word ciphers[] = {
    {"NONE", AIR_PLAIN},
    {"WEP", AIR_RC4},
    {"TKIP", AIR_TKIP},
    {"AES", AIR_AES},
    {"TKIPAES", AIR_TKIP | AIR_AES},
    {NULL, 0},
};

enum side { PLAIN = 1, PREFIXED = 2, EITHER = 3 };
enum form { AUTH_MODE, CIPHER, ADDRESS, NUMBER, TEXT };

static const struct rule {
    const char* name;
    enum mtk_key key;
    enum side side; /* without the prefix "ApCli", with it, or both */
    enum form form;
    int low, high; /* limits of a number, or of a text's length */
} rules[] = {
    {"AuthMode", MTK_AUTH_MODE, EITHER, AUTH_MODE, 0, 0},
    {"EncrypType", MTK_ENCRYP_TYPE, EITHER, CIPHER, 0, 0},
    {"WPAPSK", MTK_WPAPSK, EITHER, TEXT, 8, AIR_KEY_MAX},
    {"SSID", MTK_SSID, PLAIN, TEXT, 1, AIR_SSID_MAX},
    {"Ssid", MTK_SSID, PREFIXED, TEXT, 1, AIR_SSID_MAX},
    {"BSSID", MTK_BSSID, PLAIN, ADDRESS, 0, 0},
    {"Bssid", MTK_BSSID, PREFIXED, ADDRESS, 0, 0},
    {"DefaultKeyID", MTK_DEFAULT_KEY_ID, EITHER, NUMBER, 1, 4},
    {"Key1", MTK_KEY_1, EITHER, TEXT, 5, 26},
    {"Key2", MTK_KEY_2, EITHER, TEXT, 5, 26},
    {"Key3", MTK_KEY_3, EITHER, TEXT, 5, 26},
    {"Key4", MTK_KEY_4, EITHER, TEXT, 5, 26},
    {"Channel", MTK_CHANNEL, PLAIN, TEXT, 1, 6}, /* an impossible one is taken, and ignored */
    {"CountryRegion", MTK_COUNTRY_REGION, PLAIN, NUMBER, 0, 255},
    {"CountryRegionABand", MTK_COUNTRY_REGION_A, PLAIN, NUMBER, 0, 255},
    {"RadioOn", MTK_RADIO_ON, PLAIN, NUMBER, 0, 1},
    {"AutoChannelSel", MTK_AUTO_CHANNEL, PLAIN, NUMBER, 0, 3},
    {"Enable", MTK_ENABLE, PREFIXED, NUMBER, 0, 1},
    {"AutoConnect", MTK_AUTO_CONNECT, PREFIXED, NUMBER, 0, 1},
    {"IEEE8021X", MTK_8021X, PLAIN, NUMBER, 0, 1},
    {"WpaMixPairCipher", MTK_MIX_PAIR_CIPHER, PLAIN, TEXT, 1, 32},
    {"SiteSurvey", MTK_SITE_SURVEY, PLAIN, TEXT, 0, AIR_SSID_MAX},
    {"WscConfMode", MTK_WSC_CONF_MODE, PLAIN, NUMBER, 0, 7},
    {"WscMode", MTK_WSC_MODE, PLAIN, NUMBER, 1, 2},
    {"WscGetConf", MTK_WSC_GET_CONF, PLAIN, NUMBER, 1, 1},
    {"WscStop", MTK_WSC_STOP, PLAIN, NUMBER, 0, 1},
};

static int word_bits(const struct word* words, const char* text) {
    if (*text == '\0')
        return words->bits;
    for (; words->text != NULL; ++words)
        if (air_same_text(words->text, text))
            return words->bits;
    return 0;
}

static int number(const char* text, int otherwise) {
    int value = 0;
    int digits = 0;
    for (; text[digits] >= '0' && text[digits] <= '9' && digits < 6; ++digits)
        value = value * 10 + (text[digits] - '0');
    return digits > 0 && text[digits] == '\0' ? value : otherwise;
}

static int hex_digit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const int letter = (c | 0x20) - 'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

static int read_address(const char* text, uint8_t bytes[6]) {
    for (int i = 0; i < 6; ++i, text += 3) {
        const int high = hex_digit(text[0]);
        const int low = high < 0 ? -1 : hex_digit(text[1]);
        if (low < 0 || text[2] != (i < 5 ? ':' : '\0'))
            return 0;
        bytes[i] = (uint8_t)(high * 16 + low);
    }
    return 1;
}

static int makes_sense(const struct rule* rule, const char* value) {
    uint8_t bytes[6];
    int figure = 0;
    switch (rule->form) {
    case AUTH_MODE:
        return *value != '\0' && word_bits(auth_modes, value) != 0;
    case CIPHER:
        return *value != '\0' && word_bits(ciphers, value) != 0;
    case ADDRESS:
        return read_address(value, bytes);
    case NUMBER:
        figure = number(value, -1);
        break;
    case TEXT:
        while (value[figure] != '\0')
            ++figure;
        break;
    }
    return figure >= rule->low && figure <= rule->high;
}

static const struct rule* find_rule(const char* name, enum side side) {
    for (size_t i = 0; i < sizeof rules / sizeof rules[0]; ++i)
        if ((rules[i].side & side) != 0 && air_same_text(rules[i].name, name))
            return &rules[i];
    return NULL;
}

static const char* without_prefix(const char* name) {
    const char* rest = name;
    for (const char* prefix = "ApCli"; *prefix != '\0'; ++prefix)
        if (*rest++ != *prefix)
            return name;
    return rest;
}

/* An AP-client is joined while all that it was told when it was enabled fits an access point. */
static void update_join(struct mtk_radio* radio, const struct air* air, int vif) {
    struct mtk_vif* client = &radio->vifs[vif];
    client->joined = 0;
    if (!client->up || number(client->values[MTK_ENABLE], 0) == 0 ||
        number(radio->vifs[MTK_AP].values[MTK_RADIO_ON], 1) == 0)
        return;
    if (mtk_wps_holds(&radio->wps, vif)) {
        client->joined = mtk_wps_joined(&radio->wps);
        return;
    }
    uint8_t bssid[6] = {0};
    read_address(client->values[MTK_BSSID], bssid);
    const int given = bssid[0] | bssid[1] | bssid[2] | bssid[3] | bssid[4] | bssid[5];
    const int cipher = word_bits(ciphers, client->values[MTK_ENCRYP_TYPE]);
    const int wep_key = MTK_KEY_1 + number(client->values[MTK_DEFAULT_KEY_ID], 1) - 1;
    const struct air_wish wish = {
        client->values[MTK_SSID],
        given ? bssid : NULL,
        client->values[cipher == AIR_RC4 ? wep_key : MTK_WPAPSK],
        vif == MTK_CLIENT_5G,
        word_bits(auth_modes, client->values[MTK_AUTH_MODE]),
        cipher,
    };
    client->joined = air_join(air, &wish);
}

/* The chip runs, for all its interfaces, while any of them is up. */
static int runs(const struct mtk_radio* radio) {
    return radio->vifs[MTK_AP].up || radio->vifs[MTK_CLIENT_2G].up || radio->vifs[MTK_CLIENT_5G].up;
}

void mtk_radio_bring(struct mtk_radio* radio, const struct air* air, int vif, int up) {
    radio->vifs[vif].up = up != 0;
    if (!up && mtk_wps_holds(&radio->wps, vif))
        mtk_wps_end(&radio->wps);
    if (vif != MTK_AP)
        update_join(radio, air, vif);
}

/* A session needs an AP-client that is on, an enrollee's role and the push-button way. */
static int can_begin(const struct mtk_radio* radio, int vif) {
    const struct mtk_vif* chip = &radio->vifs[MTK_AP];
    return radio->vifs[vif].up && number(radio->vifs[vif].values[MTK_ENABLE], 0) == 1 &&
           number(chip->values[MTK_WSC_CONF_MODE], 0) == 1 &&
           number(chip->values[MTK_WSC_MODE], 0) == 2;
}

/* Copies up to a terminator or to the end; what does not fit fails. */
static int copy_until(char end, const char** text, size_t* left, char* copy, size_t room) {
    for (; *left > 0 && **text != end; ++*text, --*left) {
        if (--room == 0)
            return 0;
        *copy++ = **text;
    }
    *copy = '\0';
    return 1;
}

enum mtk_answer mtk_radio_set(struct mtk_radio* radio, const struct air* air, int vif,
                              const char* text, size_t length) {
    if (!runs(radio))
        return MTK_DOWN;
    char name[32];
    char value[MTK_VALUE_MAX];
    if (!copy_until('=', &text, &length, name, sizeof name) || length == 0)
        return MTK_INVALID;
    ++text;
    --length;
    if (!copy_until('\0', &text, &length, value, sizeof value))
        return MTK_INVALID;

    const char* bare = without_prefix(name);
    const int prefixed = bare != name;
    const struct rule* rule = find_rule(bare, prefixed ? PREFIXED : PLAIN);
    if (rule == NULL || !makes_sense(rule, value) || (prefixed && vif == MTK_AP) ||
        (rule->key == MTK_WSC_GET_CONF && !can_begin(radio, vif)))
        return MTK_INVALID;

    /* A key without the prefix is the access point's or the chip's, wherever it arrives. */
    char* kept = radio->vifs[prefixed ? vif : MTK_AP].values[rule->key];
    for (const char* from = value; (*kept++ = *from) != '\0';)
        ++from;
    /* What an AP-client is told takes the place of what an access point handed it. */
    if (rule->key == MTK_WSC_STOP || (prefixed && mtk_wps_holds(&radio->wps, vif)))
        mtk_wps_end(&radio->wps);
    if (rule->key == MTK_WSC_GET_CONF)
        mtk_wps_begin(&radio->wps, air, vif, vif == MTK_CLIENT_5G);
    if (rule->key == MTK_RADIO_ON) {
        update_join(radio, air, MTK_CLIENT_2G);
        update_join(radio, air, MTK_CLIENT_5G);
    }
    if (rule->key == MTK_ENABLE || rule->key == MTK_AUTO_CONNECT || rule->key == MTK_WSC_GET_CONF)
        update_join(radio, air, vif);
    if (rule->key == MTK_SITE_SURVEY)
        radio->surveyed = 1;
    return MTK_DONE;
}

enum mtk_answer mtk_radio_survey(const struct mtk_radio* radio, const struct air* air, char* text,
                                 size_t* length) {
    if (!runs(radio))
        return MTK_DOWN;
    const int count = radio->surveyed ? air->count : 0;
    *length = mtk_survey_table(air->points, count, radio->survey_layout, text, *length);
    return MTK_DONE;
}

enum mtk_answer mtk_radio_profile(const struct mtk_radio* radio, const struct air* air, char* text,
                                  size_t* length) {
    const int32_t joined = mtk_wps_joined(&radio->wps);
    if (joined == 0)
        return MTK_INVALID;
    *length = mtk_wps_profile(&air->points[joined - 1], text, *length);
    return MTK_DONE;
}

static void write_hex(char* text, int digits, uint32_t value) {
    for (; digits > 0; value >>= 4)
        text[--digits] = "0123456789ABCDEF"[value & 15];
}

enum mtk_answer mtk_radio_register(struct mtk_radio* radio, char text[MTK_REGISTER_TEXT],
                                   size_t length) {
    if (!runs(radio))
        return MTK_DOWN;
    static const char form[MTK_REGISTER_TEXT] = "\nBBP[0x0000]:00000000 ";
    uint32_t numbers[2] = {0, 0}; /* the register, and what it is to hold */
    int at = 0;
    int digits = 0;
    for (size_t i = 0; i < length && text[i] != '\0'; ++i) {
        const int digit = hex_digit(text[i]);
        if (digit >= 0 && digits++ < 8)
            numbers[at] = numbers[at] << 4 | (uint32_t)digit;
        else if (text[i] == '=' && digits > 0 && at++ == 0)
            digits = 0;
        else
            return MTK_INVALID;
    }
    if (digits == 0 || numbers[0] >= MTK_REGISTERS)
        return MTK_INVALID;
    if (at == 1)
        radio->registers[numbers[0]] = numbers[1];
    for (size_t i = 0; i < sizeof form; ++i)
        text[i] = form[i];
    write_hex(text + 7, 4, numbers[0]);
    write_hex(text + 13, 8, radio->registers[numbers[0]]);
    return MTK_DONE;
}

int mtk_radio_level(const struct mtk_radio* radio, const struct air* air) {
    const int near = radio->vifs[MTK_CLIENT_2G].joined;
    const int joined = near != 0 ? near : radio->vifs[MTK_CLIENT_5G].joined;
    return joined != 0 ? air->points[joined - 1].level : MTK_NOISE;
}

enum mtk_answer mtk_radio_query(struct mtk_radio* radio, const struct air* air, int code,
                                int32_t* answer) {
    static const struct {
        int code;
        int above; /* what the figure counts from: 0 dBm or the noise */
        int less;  /* than at the first antenna */
    } queries[] = {
        {0x0108, 0, 0},         {0x0109, 0, 2},         {0x0630, 0, 5},
        {0x0678, MTK_NOISE, 0}, {0x0679, MTK_NOISE, 2},
    };
    if (code == 0x0751) {
        *answer = mtk_wps_status(&radio->wps);
        update_join(radio, air, radio->wps.vif);
        return MTK_DONE;
    }
    for (size_t i = 0; i < sizeof queries / sizeof queries[0]; ++i) {
        if (queries[i].code != code)
            continue;
        *answer = mtk_radio_level(radio, air) - queries[i].above - queries[i].less;
        return MTK_DONE;
    }
    return MTK_INVALID;
}

int mtk_radio_channel(const struct mtk_radio* radio, const struct air* air, int vif) {
    const int joined = radio->vifs[vif].joined;
    if (joined != 0)
        return air_channel(air->points[joined - 1].mhz);
    const int asked = number(radio->vifs[MTK_AP].values[MTK_CHANNEL], 0);
    if (vif == MTK_CLIENT_5G)
        return asked >= 36 && asked <= 196 ? asked : 36;
    return asked >= 1 && asked <= 14 ? asked : 1;
}
