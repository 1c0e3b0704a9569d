/* SPDX-License-Identifier: MIT OR GPL-2.0-only */
/* The access points in range. Freestanding C: the same source also runs inside a kernel. */

#pragma once

#include <stddef.h> // NOLINT(modernize-deprecated-headers): C reads this, too
#include <stdint.h> // NOLINT(modernize-deprecated-headers)

#ifdef __cplusplus
extern "C" {
#endif

enum { AIR_MAX = 320, AIR_SSID_MAX = 32, AIR_KEY_MAX = 64, AIR_CHANNEL_MAX = 196 };

/* Bits: an access point may offer several at once. With AIR_SERVER a server hands out the keys. */
enum air_security { AIR_OPEN = 1, AIR_WEP = 2, AIR_WPA = 4, AIR_WPA2 = 8, AIR_SERVER = 16 };
enum air_cipher { AIR_PLAIN = 1, AIR_RC4 = 2, AIR_TKIP = 4, AIR_AES = 8 };

/* As Wireless Extensions number them. */
enum air_mode { AIR_ADHOC = 1, AIR_MASTER = 3 };

struct access_point {
    uint8_t ssid[AIR_SSID_MAX];
    uint8_t ssid_length;
    uint8_t bssid[6];
    uint8_t security;
    uint8_t cipher;
    uint8_t group; /* cipher of what is sent to all */
    uint8_t hidden;
    uint8_t button; /* its button for push-button set-up is pressed */
    uint8_t mode;
    uint8_t quality; /* as the driver reckons it, percent as a rule */
    int8_t level;    /* dBm */
    uint16_t mhz;
    char key[AIR_KEY_MAX + 1]; /* the one that lets a station in */
    uint16_t rejects;          /* status with which it refuses every station; 0 for none */
    uint8_t gone;
    int64_t vanishes_at; /* microseconds of the camera's clock; 0 for never */
};

struct air {
    int32_t count;
    struct access_point points[AIR_MAX];
};

/* Takes away what vanishes until now. Returns whether something did. */
int air_advance(struct air* air, int64_t now);

/* When the next access point vanishes; 0 for never. */
int64_t air_due(const struct air* air);

/* The network that a station asks for. */
struct join_request {
    const char* ssid;
    const uint8_t* bssid; /* NULL takes any */
    const char* key;
    int five_ghz;
    int security;
    int cipher;
    int channel; /* the only one on which it is looked for; 0 for all of the band */
};

int air_same_text(const char* a, const char* b);

/* The number, from 1, of the strongest access point that lets the station in; 0 for none. */
int air_join(const struct air* air, const struct join_request* request);

int air_channel(int mhz);

#ifdef __cplusplus
}
#endif
