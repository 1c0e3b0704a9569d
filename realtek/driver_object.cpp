#include <cstdio>
#include <optional>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

#include "libwlan/process.h"
#include "libwlan/wext.h"
#include "realtek/daemon_files.h"
#include "util/debug_level.h"

wext::wext() = default; // the rest is init()'s business

wext::~wext() = default; // a failed request leaves its socket open: callers count on it

int wext::open_socket() {
    return socket(AF_INET, SOCK_DGRAM, 0);
}

int wext::init(bool stop_supplicant) {
    debug_level = 0;
    if (const std::optional<int> level = read_debug_level()) {
        debug_flag = *level;
        debug_level = debug_flag;
    }
    sock = open_socket();
    if (sock < 0) {
        std::perror("iw_socket");
        return -1;
    }
    if (stop_supplicant)
        send_signal_ps(WPA_SUPPLICANT_PID_FILE, SIGTERM, 1);
    return 0;
}

int wext::release() {
    if (sock > 0) // descriptor 0 is not the library's to close
        close(sock);
    sock = -1;
    return 0;
}
