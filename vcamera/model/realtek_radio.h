// SPDX-License-Identifier: MIT
// The Realtek radio as its driver shows it.

#pragma once

#include <cstdint>

#include "vcamera/model/air.h"

/// The driver's interfaces: "wlan0" for wpa_supplicant, "wlan1" for hostapd.
enum realtek_vif_number { REALTEK_STATION, REALTEK_AP, REALTEK_VIFS };

/// How the driver tells on which channel something is.
enum class frequency_form : std::uint8_t {
    kernel,  // in MHz, as the kernel's own drivers do, and only of a station that has joined
    channel, // as the channel's number
};

struct realtek_radio {
    struct {
        std::uint8_t up;
        std::int32_t joined;  // number, from 1, of the access point in the air; 0 for none
        std::int32_t channel; // the one that hostapd asked for
    } vifs[REALTEK_VIFS];

    // How the driver scans.
    frequency_form frequencies;
    std::int32_t busy;      // how often it answers that a scan is still running
    std::int32_t busy_left; // of this scan
    std::uint8_t scanned;   // a scan was asked for
    std::uint8_t hint;      // whether it names the length of results that do not fit
    std::uint8_t max_quality;
    std::uint8_t vendor_bytes; // in every beacon, of no use to anyone
};

void realtek_radio_bring(realtek_radio& radio, int vif, bool up);

int realtek_radio_channel(const realtek_radio& radio, const air& air, int vif);
