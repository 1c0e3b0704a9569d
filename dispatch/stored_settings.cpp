#include "dispatch/stored_settings.h"

namespace {

template <std::size_t size>
void end_text(char (&text)[size]) {
    text[size - 1] = '\0';
}

} // namespace

int with_settings(int (*read)(_wireless_setting*), int (*request)(_wireless_setting&)) {
    _wireless_setting settings{};
    if (read(&settings) != 0)
        return -1;
    end_text(settings.client_ssid);
    end_text(settings.client_bssid);
    end_text(settings.client_key);
    end_text(settings.ap_ssid);
    end_text(settings.ap_key);
    return request(settings);
}
