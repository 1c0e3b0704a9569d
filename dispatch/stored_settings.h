#pragma once

#include "libwlan/store.h"

/// Reads one record from the store. A text that the store left without an end is cut at the end of
/// its field: reading on would carry a key into a name.
/// @param read cam_get_ap or cam_get_client.
/// @return 0 or -1.
int read_settings(int (*read)(_wireless_setting*), _wireless_setting& settings);

/// Runs `request` with the settings that `read` gives.
/// @return 0 or -1.
template <typename Request>
int with_settings(int (*read)(_wireless_setting*), const Request& request) {
    _wireless_setting settings{};
    if (read_settings(read, settings) != 0)
        return -1;
    return request(settings);
}
