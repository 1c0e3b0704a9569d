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
    std::fprintf(file,
                 "start\t\t%.32s\n"
                 "end\t\t%.32s\n"
                 "interface\t\t%s\n"
                 "option subnet\t%.32s\n"
                 "opt router\t\t%.32s\n"
                 "opt dns\t\t%.32s\n",
                 setting->pool_start, setting->pool_end, interface, setting->subnet_mask,
                 setting->server_address, setting->server_address);
    std::fclose(file);
    return 0;
}
