// SPDX-License-Identifier: MIT OR GPL-2.0-only
// The MediaTek/Ralink radio as its driver shows it.

#include "vcamera/model/mtk_radio.h"

#include "vcamera/model/mtk_survey.h"

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

/* Whose a key is, and where it may arrive. */
enum owner {
    ACCESS_POINT = 1,  /* on "ra0" */
    CLIENT = 2,        /* with the prefix "ApCli", on that AP-client */
    EITHER = 3,        /* one or the other */
    ANY_INTERFACE = 4, /* without the prefix, on that interface */
    CHIP = 8,          /* without the prefix, on any interface */
};
enum form { AUTH_MODE, CIPHER, ADDRESS, NUMBER, TEXT, KEY };

static const struct rule {
    const char* name;
    enum mtk_key key;
    enum owner owner;
    enum form form;
    int low, high; /* limits of a number, or of a text's length */
} rules[] = {
    {"AuthMode", MTK_AUTH_MODE, EITHER, AUTH_MODE, 0, 0},
    {"EncrypType", MTK_ENCRYP_TYPE, EITHER, CIPHER, 0, 0},
    {"WPAPSK", MTK_WPAPSK, EITHER, KEY, 8, AIR_KEY_MAX},
    {"SSID", MTK_SSID, ACCESS_POINT, TEXT, 1, AIR_SSID_MAX},
    {"Ssid", MTK_SSID, CLIENT, TEXT, 1, AIR_SSID_MAX},
    {"BSSID", MTK_BSSID, ACCESS_POINT, ADDRESS, 0, 0},
    {"Bssid", MTK_BSSID, CLIENT, ADDRESS, 0, 0},
    {"DefaultKeyID", MTK_DEFAULT_KEY_ID, EITHER, NUMBER, 1, 4},
    {"Key1", MTK_KEY_1, EITHER, TEXT, 5, 26},
    {"Key2", MTK_KEY_2, EITHER, TEXT, 5, 26},
    {"Key3", MTK_KEY_3, EITHER, TEXT, 5, 26},
    {"Key4", MTK_KEY_4, EITHER, TEXT, 5, 26},
    {"Channel", MTK_CHANNEL, ANY_INTERFACE, TEXT, 1, 6}, /* also one that there is not */
    {"CountryRegion", MTK_COUNTRY_REGION, CHIP, NUMBER, 0, 255},
    {"CountryRegionABand", MTK_COUNTRY_REGION_A, CHIP, NUMBER, 0, 255},
    {"RadioOn", MTK_RADIO_ON, CHIP, NUMBER, 0, 1},
    {"AutoChannelSel", MTK_AUTO_CHANNEL, ACCESS_POINT, NUMBER, 0, 3},
    {"Enable", MTK_ENABLE, CLIENT, NUMBER, 0, 1},
    {"AutoConnect", MTK_AUTO_CONNECT, CLIENT, NUMBER, 0, 1},
    {"IEEE8021X", MTK_8021X, CHIP, NUMBER, 0, 1},
    {"WpaMixPairCipher", MTK_MIX_PAIR_CIPHER, CHIP, TEXT, 1, 32},
    {"SiteSurvey", MTK_SITE_SURVEY, ANY_INTERFACE, TEXT, 0, AIR_SSID_MAX},
    {"WscConfMode", MTK_WSC_CONF_MODE, ANY_INTERFACE, NUMBER, 0, 7},
    {"WscMode", MTK_WSC_MODE, ANY_INTERFACE, NUMBER, 1, 2},
    {"WscGetConf", MTK_WSC_GET_CONF, ANY_INTERFACE, NUMBER, 1, 1},
    {"WscStop", MTK_WSC_STOP, ANY_INTERFACE, NUMBER, 0, 1},
};

static int word_bits(const struct word* words, const char* text) {
    if (*text == '\0')
        return words->bits;
    for (; words->text != NULL; ++words) {
        if (air_same_text(words->text, text))
            return words->bits;
    }
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

static int text_length(const char* text) {
    int length = 0;
    while (text[length] != '\0')
        ++length;
    return length;
}

/* 64 hexadecimal digits are the key itself, fewer characters a passphrase. */
static int is_raw_key(const char* text) {
    int digits = 0;
    while (hex_digit(text[digits]) >= 0)
        ++digits;
    return digits == AIR_KEY_MAX && text[digits] == '\0';
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
    case KEY:
        if (text_length(value) == AIR_KEY_MAX && !is_raw_key(value))
            return 0;
        figure = text_length(value);
        break;
    case TEXT:
        figure = text_length(value);
        break;
    }
    return figure >= rule->low && figure <= rule->high;
}

/* Whose keys may arrive on the interface, with or without the prefix. */
static unsigned int owners_on(int vif, int prefixed) {
    if (prefixed)
        return vif == MTK_AP ? 0 : CLIENT;
    return (vif == MTK_AP ? ACCESS_POINT : 0U) | ANY_INTERFACE | CHIP;
}

static const struct rule* find_rule(const char* name, unsigned int owners) {
    for (size_t i = 0; i < sizeof rules / sizeof rules[0]; ++i) {
        if ((rules[i].owner & owners) != 0 && air_same_text(rules[i].name, name))
            return &rules[i];
    }
    return NULL;
}

static const char* without_prefix(const char* name) {
    const char* rest = name;
    for (const char* prefix = "ApCli"; *prefix != '\0'; ++prefix) {
        if (*rest++ != *prefix)
            return name;
    }
    return rest;
}

static enum mtk_band band_of(int vif) {
    return vif == MTK_CLIENT_5G ? MTK_5G : MTK_2G;
}

/* Until it is told another. */
static int first_channel(enum mtk_band band) {
    return band == MTK_5G ? 36 : 1;
}

/* A key that was derived with another name than the network's lets nobody in. */
static int key_fits(const struct mtk_vif* client, int cipher) {
    return (cipher & (AIR_TKIP | AIR_AES)) == 0 || is_raw_key(client->values[MTK_WPAPSK]) ||
           air_same_text(client->key_ssid, client->values[MTK_SSID]);
}

static int32_t find_network(const struct mtk_radio* radio, const struct air* air, int vif) {
    const struct mtk_vif* client = &radio->vifs[vif];
    const int32_t channel = radio->channels[band_of(vif)];
    uint8_t bssid[6] = {0};
    read_address(client->values[MTK_BSSID], bssid);
    const int given = bssid[0] | bssid[1] | bssid[2] | bssid[3] | bssid[4] | bssid[5];
    const int cipher = word_bits(ciphers, client->values[MTK_ENCRYP_TYPE]);
    const int wep_key = MTK_KEY_1 + number(client->values[MTK_DEFAULT_KEY_ID], 1) - 1;
    const struct join_request request = {
        .ssid = client->values[MTK_SSID],
        .bssid = given ? bssid : NULL,
        .key = client->values[cipher == AIR_RC4 ? wep_key : MTK_WPAPSK],
        .five_ghz = band_of(vif) == MTK_5G,
        .security = word_bits(auth_modes, client->values[MTK_AUTH_MODE]),
        .cipher = cipher,
        .channel = client->scans  ? 0
                   : channel != 0 ? channel
                                  : first_channel(band_of(vif)),
    };
    return key_fits(client, cipher) ? air_join(air, &request) : 0;
}

/* An AP-client is joined while all that it was told fits an access point that it hears. */
static void update_join(struct mtk_radio* radio, const struct air* air, int vif) {
    struct mtk_vif* client = &radio->vifs[vif];
    client->joined = 0;
    if (!client->up || number(client->values[MTK_ENABLE], 0) == 0 ||
        number(radio->vifs[MTK_AP].values[MTK_RADIO_ON], 1) == 0)
        return;
    client->joined = mtk_wps_holds(&radio->wps, vif) ? mtk_wps_joined(&radio->wps)
                                                     : find_network(radio, air, vif);
    if (client->joined != 0)
        radio->channels[band_of(vif)] = air_channel(air->points[client->joined - 1].mhz);
}

/* Numbers above every channel, with which an automatic channel comes, have the AP-client scan. On
   any other it stays, also when its band has none of that number. */
static void tune(struct mtk_radio* radio, const struct air* air, int vif, int channel) {
    const int client = vif == MTK_AP ? MTK_CLIENT_2G : vif;
    radio->vifs[client].scans = channel > AIR_CHANNEL_MAX;
    if (channel <= AIR_CHANNEL_MAX)
        radio->channels[band_of(client)] = channel;
    update_join(radio, air, client);
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

void mtk_radio_leave_gone(struct mtk_radio* radio, const struct air* air) {
    for (int vif = MTK_CLIENT_2G; vif < MTK_VIFS; ++vif) {
        const int joined = radio->vifs[vif].joined;
        if (joined == 0 || !air->points[joined - 1].gone)
            continue;
        if (mtk_wps_holds(&radio->wps, vif))
            mtk_wps_end(&radio->wps);
        update_join(radio, air, vif);
    }
}

/* A session needs an AP-client that is on, an enrollee's role and the push-button way. */
static int can_begin(const struct mtk_radio* radio, int vif) {
    const struct mtk_vif* client = &radio->vifs[vif];
    return client->up && number(client->values[MTK_ENABLE], 0) == 1 &&
           number(client->values[MTK_WSC_CONF_MODE], 0) == 1 &&
           number(client->values[MTK_WSC_MODE], 0) == 2;
}

static void copy_text(char* copy, const char* text) {
    while ((*copy++ = *text++) != '\0') {
    }
}

/* Copies up to a character or to the end. What does not fit fails, as does a NUL that is copied. */
static int copy_until(char end, const char** text, size_t* left, char* copy, size_t room) {
    for (; *left > 0 && **text != end; ++*text, --*left) {
        if (--room == 0 || **text == '\0')
            return 0;
        *copy++ = **text;
    }
    *copy = '\0';
    return 1;
}

/* What the driver does about a value that it has kept. */
static void carry_out(struct mtk_radio* radio, const struct air* air, int vif, enum mtk_key key,
                      int64_t now) {
    struct mtk_vif* own = &radio->vifs[vif];
    const int figure = number(own->values[key], -1);
    switch (key) {
    case MTK_WPAPSK:
        copy_text(own->key_ssid, own->values[MTK_SSID]);
        break;
    case MTK_RADIO_ON:
        update_join(radio, air, MTK_CLIENT_2G);
        update_join(radio, air, MTK_CLIENT_5G);
        break;
    case MTK_CHANNEL:
        tune(radio, air, vif, figure);
        break;
    case MTK_ENABLE:
        own->scans = own->scans && figure == 1;
        update_join(radio, air, vif);
        break;
    case MTK_AUTO_CONNECT:
        own->scans = figure == 1 && number(own->values[MTK_ENABLE], 0) == 1;
        update_join(radio, air, vif);
        break;
    case MTK_SITE_SURVEY:
        own->survey_over = now + MTK_SCAN_TIME;
        break;
    case MTK_WSC_GET_CONF:
        mtk_wps_begin(&radio->wps, air, vif, band_of(vif) == MTK_5G);
        update_join(radio, air, vif);
        break;
    case MTK_WSC_STOP:
        if (radio->wps.vif == vif)
            mtk_wps_end(&radio->wps);
        break;
    default:
        break;
    }
}

enum mtk_answer mtk_radio_set(struct mtk_radio* radio, const struct air* air, int vif,
                              const char* text, size_t length, int64_t now) {
    if (!runs(radio))
        return MTK_DOWN;
    char name[32];
    char value[MTK_VALUE_MAX];
    if (!copy_until('=', &text, &length, name, sizeof name) || length == 0)
        return MTK_INVALID;
    ++text;
    --length;
    if (!copy_until('\0', &text, &length, value, sizeof value) || length != 0)
        return MTK_INVALID;

    const char* bare = without_prefix(name);
    const int prefixed = bare != name;
    const struct rule* rule = find_rule(bare, owners_on(vif, prefixed));
    if (rule == NULL || !makes_sense(rule, value) ||
        (rule->key == MTK_WSC_GET_CONF && !can_begin(radio, vif)))
        return MTK_INVALID;
    if (rule->key == MTK_SITE_SURVEY && !radio->vifs[vif].up)
        return MTK_DOWN;

    const int owner = rule->owner == CHIP ? MTK_AP : vif;
    copy_text(radio->vifs[owner].values[rule->key], value);
    /* What an AP-client is told takes the place of what an access point handed it. */
    if (prefixed && mtk_wps_holds(&radio->wps, vif))
        mtk_wps_end(&radio->wps);
    carry_out(radio, air, owner, rule->key, now);
    return MTK_DONE;
}

int mtk_radio_surveyed(const struct mtk_radio* radio, int vif, int64_t now) {
    return radio->vifs[vif].survey_over != 0 && now >= radio->vifs[vif].survey_over;
}

enum mtk_answer mtk_radio_survey(const struct mtk_radio* radio, const struct air* air, int vif,
                                 int64_t now, char* text, size_t* length) {
    if (!runs(radio))
        return MTK_DOWN;
    const int count = mtk_radio_surveyed(radio, vif, now) ? air->count : 0;
    *length = mtk_survey_table(air->points, count, radio->survey_layout, text, *length);
    return MTK_DONE;
}

enum mtk_answer mtk_radio_profile(const struct mtk_radio* radio, const struct air* air, int vif,
                                  char* text, size_t* length) {
    const int32_t joined = mtk_wps_holds(&radio->wps, vif) ? mtk_wps_joined(&radio->wps) : 0;
    if (joined == 0)
        return MTK_INVALID;
    *length = mtk_wps_profile(&air->points[joined - 1], radio->wps.profile_form, text, *length);
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
    if (length == 0 || text[length - 1] != '\0')
        return MTK_INVALID;
    for (size_t i = 0; i < length - 1; ++i) {
        const int digit = hex_digit(text[i]);
        if (digit >= 0 && digits++ < 8) {
            numbers[at] = numbers[at] << 4 | (uint32_t)digit;
        } else if (text[i] == '=' && digits > 0 && at++ == 0) {
            digits = 0;
        } else {
            return MTK_INVALID;
        }
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

enum mtk_answer mtk_radio_query(struct mtk_radio* radio, const struct air* air, int vif, int code,
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
        *answer = mtk_wps_status(&radio->wps, vif);
        if (mtk_wps_holds(&radio->wps, vif))
            update_join(radio, air, vif);
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

int mtk_radio_channel(const struct mtk_radio* radio, int vif) {
    const enum mtk_band band = band_of(vif);
    const int channel = radio->channels[band];
    const int possible = band == MTK_5G ? channel >= 36 : channel >= 1 && channel <= 14;
    return possible ? channel : first_channel(band);
}
