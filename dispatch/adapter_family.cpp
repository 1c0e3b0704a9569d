#include <cstdio>
#include <cstring>

#include <unistd.h>

#include "libwlan/modes.h"

namespace {

constexpr const char* usb_devices = "/proc/bus/usb/devices";

/// Whether one of the lines of `list` contains `text`.
bool lists(FILE* list, const char* text) {
    char line[128];
    while (std::fgets(line, sizeof line, list) != nullptr)
        if (std::strstr(line, text) != nullptr)
            return true;
    return false;
}

} // namespace

int isMtkWifi() {
    if (access(usb_devices, F_OK) == 0) {
        FILE* file = std::fopen(usb_devices, "r");
        if (file == nullptr)
            return 0;
        const bool found = lists(file, "Vendor=148f");
        std::fclose(file);
        return found ? 1 : 0;
    }
    FILE* tool = popen("lsusb", "r");
    if (tool == nullptr)
        return 0;
    const bool found = lists(tool, "148f");
    pclose(tool);
    return found ? 1 : 0;
}
