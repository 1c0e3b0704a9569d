// SPDX-License-Identifier: MIT
// The access point as a service: the stored radio settings, and the DHCP server behind them.

#include "libwlan/access_point.h"

#include <csignal>
#include <cstdio>

#include "base/paths.h"
#include "base/program.h"
#include "base/text.h"
#include "base/unique_file.h"
#include "libwlan/modes.h"
#include "libwlan/process.h"
#include "mtk/interfaces.h"
#include "realtek/daemons.h"

using namespace libwlan;

namespace {

void stop_dhcp_server() {
    send_signal_ps(path::udhcpd_pid, SIGTERM, 1);
}

void start_dhcp_server(const char* interface, const _dhcp_server_setting& setting) {
    stop_dhcp_server();
    create_udhcpd_config(interface, &setting);
    // Part of the interface: a command of more than 31 characters loses its tail.
    char command[32];
    cut_text(command, sizeof command, "ifconfig %s %.32s up\n", interface, setting.server_address);
    run_program(command);
    run_program("udhcpd"); // detaches by itself
}

} // namespace

int run_ap_mode_base_db() {
    const bool is_mtk = isMtkWifi() != 0;
    if ((is_mtk ? do_ap_mode_base_db_mtk() : do_ap_mode_base_db_realtek()) < 0)
        return -1;
    _dhcp_server_setting setting{};
    if (cam_get_dhcp_server(&setting) != 0)
        return -1;
    start_dhcp_server(is_mtk ? MTK_ACCESS_POINT : REALTEK_ACCESS_POINT, setting);
    return 0;
}

int run_stop_ap_mode() {
    stop_dhcp_server();
    return isMtkWifi() ? do_stop_ap_mode_mtk() : do_stop_ap_mode_realtek();
}

int do_stop_ap_mode_mtk() {
    run_program("ifdown " MTK_ACCESS_POINT);
    run_program("ifconfig " MTK_ACCESS_POINT " 0.0.0.0 down");
    return 0;
}

int do_stop_ap_mode_realtek() {
    send_signal_ps(HOSTAPD_PID_FILE, SIGTERM, 1); // before its interface goes down
    run_program("ifdown " REALTEK_ACCESS_POINT);
    run_program("ifconfig " REALTEK_ACCESS_POINT " 0.0.0.0 down");
    return 0;
}

int create_udhcpd_config(const char* interface, const _dhcp_server_setting* setting) {
    if (interface == nullptr || setting == nullptr)
        return -1;
    const unique_file file = open_file(path::udhcpd_config, "w+");
    if (file == nullptr) {
        std::perror("Open /tmp/udhcpd.conf fail");
        return -1;
    }
    // The uneven keywords and tabs are part of the interface.
    std::fprintf(file.get(),
                 "start\t\t%.32s\n"
                 "end\t\t%.32s\n"
                 "interface\t\t%s\n"
                 "option subnet\t%.32s\n"
                 "opt router\t\t%.32s\n"
                 "opt dns\t\t%.32s\n",
                 setting->pool_start, setting->pool_end, interface, setting->subnet_mask,
                 setting->server_address, setting->server_address);
    return 0;
}
