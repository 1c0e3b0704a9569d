// SPDX-License-Identifier: MIT OR GPL-2.0-only
// The access points in range.

#include "vcamera/model/air.h"

int air_same_text(const char* a, const char* b) {
    while (*a != '\0' && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

/* `text` ends where the bytes do. */
static int names(const char* text, const uint8_t* bytes, size_t length) {
    for (size_t i = 0; i < length; ++i) {
        if (text[i] == '\0' || (uint8_t)text[i] != bytes[i])
            return 0;
    }
    return text[length] == '\0';
}

static int same_address(const uint8_t* a, const uint8_t* b) {
    for (int i = 0; i < 6; ++i) {
        if (a[i] != b[i])
            return 0;
    }
    return 1;
}

static int accepts(const struct access_point* point, const struct join_request* request) {
    return !point->gone && point->rejects == 0 &&
           names(request->ssid, point->ssid, point->ssid_length) &&
           (request->bssid == NULL || same_address(request->bssid, point->bssid)) &&
           (point->mhz >= 5000) == (request->five_ghz != 0) &&
           (request->channel == 0 || request->channel == air_channel(point->mhz)) &&
           (point->security & request->security) != 0 && (point->cipher & request->cipher) != 0 &&
           (point->security == AIR_OPEN || air_same_text(point->key, request->key));
}

int air_join(const struct air* air, const struct join_request* request) {
    int best = 0;
    for (int i = 0; i < air->count; ++i) {
        if (accepts(&air->points[i], request) &&
            (best == 0 || air->points[i].level > air->points[best - 1].level))
            best = i + 1;
    }
    return best;
}

int air_advance(struct air* air, int64_t now) {
    int any = 0;
    for (int i = 0; i < air->count; ++i) {
        struct access_point* point = &air->points[i];
        if (point->gone || point->vanishes_at == 0 || now < point->vanishes_at)
            continue;
        point->gone = 1;
        any = 1;
    }
    return any;
}

int64_t air_due(const struct air* air) {
    int64_t due = 0;
    for (int i = 0; i < air->count; ++i) {
        const struct access_point* point = &air->points[i];
        if (!point->gone && point->vanishes_at != 0 && (due == 0 || point->vanishes_at < due))
            due = point->vanishes_at;
    }
    return due;
}

int air_channel(int mhz) {
    if (mhz == 2484)
        return 14;
    return (mhz - (mhz < 5000 ? 2407 : 5000)) / 5;
}
