#include <cstdio>

#include "libwlan/access_point.h"

int create_udhcpd_config(const char* interface, const _dhcp_server_setting* setting) {
    if (interface == nullptr || setting == nullptr)
        return -1;
    FILE* file = std::fopen("/tmp/udhcpd.conf", "w+");
    if (file == nullptr) {
        std::perror("Open /tmp/udhcpd.conf fail");
        return -1;
    }
    // Keywords and tabs are uneven on purpose: camera images carry scripts that match these lines.
    std::fprintf(file, "start\t\t%.32s\n", setting->pool_start);
    std::fprintf(file, "end\t\t%.32s\n", setting->pool_end);
    std::fprintf(file, "interface\t\t%s\n", interface);
    std::fprintf(file, "option subnet\t%.32s\n", setting->subnet_mask);
    std::fprintf(file, "opt router\t\t%.32s\n", setting->server_address);
    std::fprintf(file, "opt dns\t\t%.32s\n", setting->server_address);
    std::fclose(file);
    return 0;
}
