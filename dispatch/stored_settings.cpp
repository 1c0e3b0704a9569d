#include "dispatch/stored_settings.h"

#include <cstring>

namespace {

template <std::size_t size>
bool has_end(const char (&text)[size]) {
    return std::memchr(text, '\0', size) != nullptr;
}

} // namespace

int read_settings(int (*read)(_wireless_setting*), _wireless_setting& settings) {
    if (read(&settings) != 0)
        return -1;
    const bool whole = has_end(settings.client_ssid) && has_end(settings.client_bssid) &&
                       has_end(settings.client_key) && has_end(settings.ap_ssid) &&
                       has_end(settings.ap_key);
    return whole ? 0 : -1;
}
