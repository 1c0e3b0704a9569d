// SPDX-License-Identifier: MIT
// The daemons that a request starts.

#include "daemons.h"

#include <csignal>
#include <fstream>

#include <unistd.h>

#include "cancelling.h"

namespace {

constexpr int look_ms = 20;
constexpr int patience_ms = 3000;
constexpr int until_pid_file_ms = 200;
constexpr int until_end_ms = 600;

/// @return the number in the pid file, 0 without one. The file of an earlier daemon is gone: the
///         library removes it when it ends that one. It leaves a file that names no process.
int pid_of(const daemon_process& daemon) {
    std::ifstream file(daemon.pid_file);
    int pid = 0;
    return file >> pid && pid > 0 ? pid : 0;
}

/// Not pause_ms(), which is over at once when the command was asked to end.
void pause_to_look() {
    usleep(look_ms * 1000);
}

} // namespace

std::string missing_daemon(const std::vector<daemon_process>& started, bool mediatek) {
    int waited_ms = 0;
    for (const daemon_process& daemon : started) {
        while (belongs(daemon, mediatek) && pid_of(daemon) == 0) {
            if (waited_ms >= patience_ms || asked_to_end())
                return daemon.name;
            pause_to_look();
            waited_ms += look_ms;
        }
    }
    return "";
}

bool is_running(const daemon_process& daemon) {
    const int pid = pid_of(daemon);
    return pid != 0 && kill(pid, 0) == 0;
}

void stop_daemon(const daemon_process& daemon) {
    int pid = pid_of(daemon);
    for (int waited_ms = 0; pid == 0 && waited_ms < until_pid_file_ms; waited_ms += look_ms) {
        pause_to_look();
        pid = pid_of(daemon);
    }
    if (pid == 0)
        return;
    kill(pid, SIGTERM);
    for (int waited_ms = 0; kill(pid, 0) == 0 && waited_ms < until_end_ms; waited_ms += look_ms)
        pause_to_look();
    kill(pid, SIGKILL);
    unlink(daemon.pid_file);
}
