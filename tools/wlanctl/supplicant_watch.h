// SPDX-License-Identifier: MIT
// Watching a Realtek adapter join, by what its wpa_supplicant tells.

#pragma once

#include <string>
#include <utility>

#include "control_socket.h"
#include "watch.h"

class supplicant_watch : public watch {
public:
    supplicant_watch(target target, bool address)
        : target_(std::move(target)), address_(address), control_(supplicant_control) {}

    sight look() override;
    setback give_up() override;

private:
    void listen();
    void take_event(const std::string& text);
    bool daemon_hears();
    setback likely() const;
    sight lost(const setback& why) const;

    target target_;
    bool address_;
    control_socket control_;
    bool linked_ = false;
    int looks_ = 0;
    int linked_looks_ = 0;
    std::string state_;  ///< as wpa_supplicant names it; empty when it did not tell
    int not_found_ = 0;  ///< scans that did not come upon the network
    int wrong_keys_ = 0; ///< handshakes that failed
    int rejections_ = 0;
    int status_code_ = 0;   ///< of the last rejection
    bool disabled_ = false; ///< for some time, after failures
    bool ended_ = false;
};
