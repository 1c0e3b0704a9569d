// SPDX-License-Identifier: MIT
// Texts with which the driver answers, but for its survey table.

#include "mtk/driver_answers.h"

#include <cstdio>
#include <cstring>

namespace libwlan::mtk {

namespace {

/// Ends the next line that is not empty, and steps behind it.
/// @return the line, or null when there is no more.
char* end_line(char*& text) {
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

std::optional<unsigned int> read_bbp_answer(const char* text) {
    // The driver writes the register as 0x0042: its 0 is the number, its x the letter.
    int number = 0;
    unsigned int reg = 0;
    unsigned int value = 0;
    if (std::sscanf(text, "\nBBP[%dx%04X]:%08x ", &number, &reg, &value) != 3)
        return std::nullopt;
    return value;
}

std::optional<wps_profile> read_wps_profile(char* text) {
    char* rest = std::strstr(text, "SSID");
    if (rest == nullptr)
        return std::nullopt;
    wps_profile profile{};
    for (const char** value : {&profile.ssid, &profile.auth, &profile.enc, &profile.number}) {
        *value = value_of(end_line(rest));
        if (*value == nullptr)
            return std::nullopt;
    }
    if (const char* const line = end_line(rest)) {
        profile.key = value_of(line);
        if (profile.key == nullptr)
            return std::nullopt;
    }
    return profile;
}

} // namespace libwlan::mtk
