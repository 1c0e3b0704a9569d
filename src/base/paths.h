// SPDX-License-Identifier: MIT
// Files of the camera that both adapter families meet. Those of one family stand with it.

#pragma once

namespace libwlan::path {

constexpr char console[] = "/dev/console";
constexpr char debug_level[] = "/tmp/debug_level";
constexpr char udhcpd_config[] = "/tmp/udhcpd.conf";
constexpr char udhcpd_pid[] = "/tmp/udhcpd.pid"; // udhcpd writes it
constexpr char usb_devices[] = "/proc/bus/usb/devices";

} // namespace libwlan::path
