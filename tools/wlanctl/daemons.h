// SPDX-License-Identifier: MIT
// The daemons that a request starts.

#pragma once

#include <string>
#include <vector>

/// A daemon that a mode starts.
struct daemon_process {
    const char* name;
    const char* pid_file;
    bool realtek_only;
};

constexpr daemon_process hostapd_daemon = {"hostapd", "/tmp/hostapd.pid", true};
constexpr daemon_process supplicant_daemon = {"wpa_supplicant", "/tmp/wpa_supplicant.pid", true};
constexpr daemon_process dhcp_daemon = {"udhcpd", "/tmp/udhcpd.pid", false};

/// @return whether the daemon is one for the adapter.
inline bool belongs(const daemon_process& daemon, bool mediatek) {
    return !daemon.realtek_only || !mediatek;
}

/// Waits until the adapter's daemons among these have written their pid files: they do so a moment
/// after their start has returned, and before it no stop would find them. Three seconds at most,
/// less when the command is asked to end.
/// @return the name of one that does not run; empty when all do.
std::string missing_daemon(const std::vector<daemon_process>& started, bool mediatek);

/// @return whether the process of its pid file lives.
bool is_running(const daemon_process& daemon);

/// Ends a daemon within a second, and takes its pid file away. One that was started a moment ago
/// and has not written its pid file yet is waited for.
void stop_daemon(const daemon_process& daemon);
