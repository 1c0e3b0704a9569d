#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#include "libwlan/wext.h"

namespace {

// Where the drivers recommend a channel. Only the first is looked at: the other drivers' figures
// have never been trusted in the field, and their cameras stay on the fallback channel.
constexpr const char* recommendations[] = {
    "/proc/net/rtl8188eu/wlan1/best_channel",
    "/proc/net/rtl8192eu/wlan1/best_channel",
    "/proc/net/rtl8723bu/wlan1/best_channel",
    "END_OF_ARRAY",
};

constexpr int fallback_channel = 1;

// The driver writes "best_channel_24G = 6".
constexpr const char* key_2g = "best_channel_24G";
constexpr std::size_t value_column = 19;

} // namespace

int get_best_channel(int* channel) {
    const char* path = recommendations[0];
    if (channel == nullptr || access(path, R_OK) != 0)
        return fallback_channel;
    FILE* file = std::fopen(path, "r+");
    if (file == nullptr)
        return fallback_channel;
    char line[80];
    while (std::fgets(line, sizeof line, file) != nullptr) {
        if (std::strstr(line, key_2g) == nullptr)
            continue;
        if (std::strlen(line) >= value_column)
            *channel = static_cast<int>(std::strtol(line + value_column, nullptr, 10));
        break;
    }
    std::fclose(file);
    std::printf("%s[%d] get_best_channel=%d\n", "get_best_channel", 245, *channel);
    return *channel;
}
