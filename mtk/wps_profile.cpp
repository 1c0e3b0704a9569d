#include "mtk/wps_profile.h"

#include <cstring>

namespace {

/// Ends the next line that is not empty, and steps behind it.
/// @return the line, or null when there is no more.
char* take_line(char*& text) {
    char* const line = text + std::strspn(text, "\n");
    text = line + std::strcspn(line, "\n");
    if (text == line)
        return nullptr;
    if (*text != '\0')
        *text++ = '\0';
    return line;
}

/// What stands behind the "=" and the blank that follows it; null for a line without them.
const char* value_of(const char* line) {
    const char* const sign = line == nullptr ? nullptr : std::strchr(line, '=');
    return sign == nullptr || sign[1] == '\0' ? nullptr : sign + 2;
}

} // namespace

std::optional<wps_profile> read_wps_profile(char* text) {
    char* rest = std::strstr(text, "SSID");
    if (rest == nullptr)
        return std::nullopt;
    wps_profile profile{};
    for (const char** value : {&profile.ssid, &profile.auth, &profile.enc, &profile.number}) {
        *value = value_of(take_line(rest));
        if (*value == nullptr)
            return std::nullopt;
    }
    if (const char* const line = take_line(rest)) {
        profile.key = value_of(line);
        if (profile.key == nullptr)
            return std::nullopt;
    }
    return profile;
}
