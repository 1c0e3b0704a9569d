#pragma once

#include "libwlan/store.h"

/// Runs `request` with one record of the store. A text that the store left without an end is cut at
/// the end of its field: reading on would carry a key into a name.
/// @param read cam_get_ap or cam_get_client.
/// @return 0 or -1.
int with_settings(int (*read)(_wireless_setting*), int (*request)(_wireless_setting&));
