// SPDX-License-Identifier: MIT
// The paths that belong to the camera and not to the host.

#include "vcamera/model/paths.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::string_view files[] = {
    "/etc/camera.conf",
    "/etc/camera.conf.new",
    "/tmp/debug_level",
    "/tmp/ap_list",
    "/tmp/udhcpd.conf",
    "/tmp/udhcpd.pid",
    "/tmp/hostapd.conf",
    "/tmp/hostapd.pid",
    "/tmp/wpa_supplicant.conf",
    "/tmp/wpa_supplicant.pid",
    "/run/wlanctl.lock",
    "/var/run/wlanctl.lock",
    "/dev/console",
    "/dev/rfkill",
    "/run/dbus/system_bus_socket", // by which programs have the host's network daemons do it
    "/var/run/dbus/system_bus_socket",
};

/// With all that is in them.
constexpr std::string_view folders[] = {
    "/dev/bus/usb",        "/dev/net",     "/proc/bus/usb",    "/run/hostapd",
    "/run/wpa_supplicant", "/sys/bus/usb", "/var/run/hostapd", "/var/run/wpa_supplicant",
};

bool contains(std::string_view path, std::string_view component) {
    for (std::size_t at = path.find(component); at != std::string_view::npos;
         at = path.find(component, at + 1)) {
        const std::size_t end = at + component.size();
        if (end == path.size() || path[end] == '/')
            return true;
    }
    return false;
}

/// Interfaces and radios also stand below their devices in /sys, and the network in the folder that
/// /proc has for each process.
bool shows_network(std::string_view path) {
    const bool in_sys = path.rfind("/sys/", 0) == 0;
    return (in_sys && (contains(path, "/ieee80211") || contains(path, "/rfkill"))) ||
           ((in_sys || path.rfind("/proc/", 0) == 0) && contains(path, "/net"));
}

} // namespace

bool belongs_to_camera(std::string_view path) {
    const auto holds_path = [&](std::string_view folder) {
        return path.rfind(folder, 0) == 0 &&
               (path.size() == folder.size() || path[folder.size()] == '/');
    };
    if (contains(path, "/.."))
        return false;
    return std::find(std::begin(files), std::end(files), path) != std::end(files) ||
           std::any_of(std::begin(folders), std::end(folders), holds_path) || shows_network(path);
}
