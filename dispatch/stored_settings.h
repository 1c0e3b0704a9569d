#pragma once

#include "libwlan/store.h"

/// Reads one record from the store. A record with a text that has no end is refused: reading it
/// would run on into the next field, from a name into a key.
/// @param read cam_get_ap or cam_get_client.
/// @return 0 or -1.
int read_settings(int (*read)(_wireless_setting*), _wireless_setting& settings);

/// Runs `request` with the settings that `read` gives.
/// @return 0 or -1.
template <typename Request>
int with_settings(int (*read)(_wireless_setting*), Request request) {
    _wireless_setting settings{};
    if (read_settings(read, settings) != 0)
        return -1;
    return request(settings);
}
