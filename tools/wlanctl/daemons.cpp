// SPDX-License-Identifier: MIT
// The daemons that a request starts.

#include "daemons.h"

#include <fstream>

#include <unistd.h>

namespace {

constexpr int pause_ms = 20;
constexpr int patience_ms = 3000;

/// The file of an earlier one is gone: the library removes it when it ends that one. It leaves a
/// file that names no process.
bool runs(const daemon_process& daemon) {
    std::ifstream file(daemon.pid_file);
    int pid = 0;
    return file >> pid && pid > 0;
}

} // namespace

std::string missing_daemon(const std::vector<daemon_process>& started, bool mediatek) {
    int waited_ms = 0;
    for (const daemon_process& daemon : started) {
        while (belongs(daemon, mediatek) && !runs(daemon)) {
            if (waited_ms >= patience_ms)
                return daemon.name;
            usleep(pause_ms * 1000);
            waited_ms += pause_ms;
        }
    }
    return "";
}
