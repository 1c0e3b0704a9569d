// SPDX-License-Identifier: MIT
// Watching an access point come up.

#pragma once

#include <string>
#include <utility>

#include "control_socket.h"
#include "watch.h"

class access_point_watch : public watch {
public:
    access_point_watch(std::string ssid, bool mediatek, bool dhcp_server)
        : ssid_(std::move(ssid)), mediatek_(mediatek), dhcp_server_(dhcp_server),
          control_(hostapd_control) {}

    sight look() override;
    setback give_up() override;

private:
    sight look_at_driver();
    sight look_at_daemon();
    sight up(const char* interface, int channel) const;

    std::string ssid_;
    bool mediatek_;
    bool dhcp_server_;
    control_socket control_;
    int looks_ = 0;
    std::string state_; ///< as hostapd names it; empty when it did not tell
    int channel_ = 0;
};
