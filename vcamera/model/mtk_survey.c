// SPDX-License-Identifier: MIT OR GPL-2.0-only
// The survey table of the MediaTek/Ralink driver.

#include "vcamera/model/mtk_survey.h"

struct security_word {
    int bits;
    const char* text;
};

static const struct security_word authentication_words[] = {
    {AIR_WPA, "WPAPSK"},
    {AIR_WPA2, "WPA2PSK"},
    {AIR_WPA | AIR_WPA2, "WPA1PSKWPA2PSK"},
    {AIR_WPA | AIR_SERVER, "WPA"},
    {AIR_WPA2 | AIR_SERVER, "WPA2"},
    {AIR_WPA | AIR_WPA2 | AIR_SERVER, "WPA1WPA2"},
    {0, "OPEN"},
};
static const struct security_word cipher_words[] = {
    {AIR_RC4, "WEP"}, {AIR_TKIP, "TKIP"}, {AIR_AES, "AES"}, {AIR_TKIP | AIR_AES, "TKIPAES"},
    {0, "NONE"},
};

static const char* find_text(const struct security_word* words, int bits) {
    while (words->bits != 0 && words->bits != bits)
        ++words;
    return words->text;
}

/* One line of the table, put together column by column. */
struct line {
    char text[128]; /* more than the columns of either layout */
    size_t length;
};

static void put_byte(struct line* line, char byte) {
    if (line->length < sizeof line->text)
        line->text[line->length++] = byte;
}

static void put_text(struct line* line, const char* text) {
    for (; *text != '\0'; ++text)
        put_byte(line, *text);
}

/* Left-aligned, and cut or padded with blanks to the end of its column. */
static void put(struct line* line, size_t width, const char* text) {
    const size_t end = line->length + width;
    put_text(line, text);
    if (line->length > end)
        line->length = end;
    while (line->length < end && line->length < sizeof line->text)
        put_byte(line, ' ');
}

static void put_number(struct line* line, size_t width, int number) {
    char digits[12];
    char* first = &digits[sizeof digits - 1];
    const int negative = number < 0;
    *first = '\0';
    for (unsigned int rest = negative ? 0U - (unsigned int)number : (unsigned int)number;;
         rest /= 10) {
        *--first = (char)('0' + rest % 10);
        if (rest < 10)
            break;
    }
    if (negative)
        *--first = '-';
    put(line, width, first);
}

/* Ends at a NUL in it; a hidden one is empty. */
static void put_name(struct line* line, size_t width, const struct access_point* point) {
    const size_t end = line->length + width;
    const size_t length = point->hidden ? 0 : point->ssid_length;
    put_text(line, "\"");
    for (size_t at = 0; at < length && point->ssid[at] != '\0'; ++at)
        put_byte(line, (char)point->ssid[at]);
    put_text(line, "\"");
    put(line, end - line->length, "");
}

static void put_address(struct line* line, size_t width, const uint8_t address[6]) {
    static const char hex[] = "0123456789abcdef";
    char text[18];
    for (int i = 0; i < 6; ++i) {
        text[3 * i] = hex[address[i] >> 4];
        text[3 * i + 1] = hex[address[i] & 15];
        text[3 * i + 2] = i < 5 ? ':' : '\0';
    }
    put(line, width, text);
}

static void print_header(int layout, struct line* line) {
    static const struct {
        const char* title;
        size_t width;
    } columns[2][8] = {
        {{"Channel", 8},
         {"RSSI", 8},
         {"SSID", 36},
         {"BSSID", 20},
         {"Enc", 12},
         {"Auth", 20},
         {"Type", 12},
         {"", 0}},
        {{"Ch", 4},
         {"SSID", 35},
         {"BSSID", 20},
         {"Security", 23},
         {"Signal", 9},
         {"W-Mode", 8},
         {"ExtCH", 7},
         {"NT", 3}},
    };
    for (size_t i = 0; i < 8; ++i)
        put(line, columns[layout - 1][i].width, columns[layout - 1][i].title);
}

static void print_row_v1(const struct access_point* point, struct line* line) {
    put_number(line, 8, air_channel(point->mhz));
    put_number(line, 8, point->level);
    put_name(line, 36, point);
    put_address(line, 20, point->bssid);
    put(line, 12, find_text(cipher_words, point->cipher));
    put(line, 20, find_text(authentication_words, point->security));
    put(line, 12, point->mode == AIR_ADHOC ? "Adhoc" : "Infra");
}

static void print_row_v2(const struct access_point* point, struct line* line) {
    put_number(line, 4, air_channel(point->mhz));
    put_name(line, 35, point);
    put_address(line, 20, point->bssid);
    const size_t end = line->length + 23;
    if ((point->security & (AIR_WPA | AIR_WPA2)) != 0) {
        put_text(line, find_text(authentication_words, point->security));
        put_text(line, "/");
    }
    put(line, end - line->length, find_text(cipher_words, point->cipher));
    put_number(line, 9, point->quality);
    put(line, 8, point->mhz < 5000 ? "11b/g/n" : "11a/n");
    put(line, 7, "NONE");
    put(line, 3, point->mode == AIR_ADHOC ? "Ad" : "In");
}

size_t mtk_survey_table(const struct access_point* points, int count, int layout, char* text,
                        size_t room) {
    size_t length = 0;
    for (int i = -1; i < count; ++i) {
        struct line line = {.length = 0};
        if (i >= 0 && points[i].gone)
            continue;
        if (i < 0) {
            print_header(layout, &line);
        } else if (layout == 1) {
            print_row_v1(&points[i], &line);
        } else {
            print_row_v2(&points[i], &line);
        }
        put_text(&line, "\n");
        if (line.length > room - length)
            break;
        for (size_t at = 0; at < line.length; ++at)
            text[length++] = line.text[at];
    }
    return length;
}
