#include <csignal>
#include <cstdio>

#include "libwlan/access_point.h"
#include "libwlan/modes.h"
#include "libwlan/process.h"
#include "realtek/daemon_files.h"
#include "util/cut_text.h"
#include "util/program.h"

namespace {

constexpr const char* udhcpd_pid_file = "/tmp/udhcpd.pid";

void start_dhcp_server(const char* interface, const _dhcp_server_setting& setting) {
    send_signal_ps(udhcpd_pid_file, SIGTERM, 1);
    create_udhcpd_config(interface, &setting);
    // 31 characters on purpose: longer commands lose their tail, as cameras in the field do.
    char command[32];
    cut_text(command, sizeof command, "ifconfig %s %.32s up\n", interface, setting.server_address);
    run_program(command);
    run_program("udhcpd"); // detaches by itself
}

} // namespace

int run_ap_mode_base_db() {
    const bool mtk = isMtkWifi() != 0;
    if ((mtk ? do_ap_mode_base_db_mtk() : do_ap_mode_base_db_realtek()) < 0)
        return -1;
    _dhcp_server_setting setting{};
    if (cam_get_dhcp_server(&setting) != 0)
        return -1;
    start_dhcp_server(mtk ? "ra0" : "wlan1", setting);
    return 0;
}

int run_stop_ap_mode() {
    send_signal_ps(udhcpd_pid_file, SIGTERM, 1);
    return isMtkWifi() ? do_stop_ap_mode_mtk() : do_stop_ap_mode_realtek();
}

int do_stop_ap_mode_mtk() {
    run_program("ifdown ra0");
    run_program("ifconfig ra0 0.0.0.0 down");
    return 0;
}

int do_stop_ap_mode_realtek() {
    send_signal_ps(HOSTAPD_PID_FILE, SIGTERM, 1); // before its interface goes down
    run_program("ifdown wlan1");
    run_program("ifconfig wlan1 0.0.0.0 down");
    return 0;
}
