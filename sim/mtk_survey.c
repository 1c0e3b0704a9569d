#include "sim/mtk_survey.h"

#include <stdio.h> /* for snprintf() alone, which kernels have as well */

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

enum { LINE_MAX_LENGTH = 128 }; /* more than the columns of either layout */

static int print_header(int layout, char* line) {
    if (layout == 1)
        return snprintf(line, LINE_MAX_LENGTH, "%-8s%-8s%-36s%-20s%-12s%-20s%-12s\n", "Channel",
                        "RSSI", "SSID", "BSSID", "Enc", "Auth", "Type");
    return snprintf(line, LINE_MAX_LENGTH, "%-4s%-34s %-20s%-23s%-9s%-8s%-7s%-3s\n", "Ch", "SSID",
                    "BSSID", "Security", "Signal", "W-Mode", "ExtCH", "NT");
}

static int print_row(int layout, const struct access_point* point, char* line) {
    char name[AIR_SSID_MAX + 3]; /* ends at a NUL in it; a hidden one is empty */
    char address[18];
    char security[24];
    const uint8_t* a = point->bssid;
    const char* authentication = find_text(authentication_words, point->security);
    const char* cipher = find_text(cipher_words, point->cipher);
    const int channel = air_channel(point->mhz);
    const int is_wpa = (point->security & (AIR_WPA | AIR_WPA2)) != 0;
    const int adhoc = point->mode == AIR_ADHOC;
    snprintf(name, sizeof name, "\"%.*s\"", point->hidden ? 0 : point->ssid_length,
             (const char*)point->ssid);
    snprintf(address, sizeof address, "%02x:%02x:%02x:%02x:%02x:%02x", a[0], a[1], a[2], a[3], a[4],
             a[5]);
    if (layout == 1)
        return snprintf(line, LINE_MAX_LENGTH, "%-8d%-8d%-36s%-20s%-12s%-20s%-12s\n", channel,
                        point->level, name, address, cipher, authentication,
                        adhoc ? "Adhoc" : "Infra");
    snprintf(security, sizeof security, "%s%s%s", is_wpa ? authentication : "", is_wpa ? "/" : "",
             cipher);
    return snprintf(line, LINE_MAX_LENGTH, "%-4d%-34s %-20s%-23s%-9d%-8s%-7s%-3s\n", channel, name,
                    address, security, point->quality, point->mhz < 5000 ? "11b/g/n" : "11a/n",
                    "NONE", adhoc ? "Ad" : "In");
}

size_t mtk_survey_table(const struct access_point* points, int count, int layout, char* text,
                        size_t room) {
    size_t length = 0;
    for (int i = -1; i < count; ++i) {
        char line[LINE_MAX_LENGTH];
        const size_t more =
            (size_t)(i < 0 ? print_header(layout, line) : print_row(layout, &points[i], line));
        if (more > room - length)
            break;
        for (size_t at = 0; at < more; ++at)
            text[length++] = line[at];
    }
    return length;
}
