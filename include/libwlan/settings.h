// SPDX-License-Identifier: MIT
/// @file
/// The enumerations through which security settings travel from the camera to both adapter
/// families. Each is one byte wide and takes any value of that byte: the operation that maps a
/// value to the driver or daemon decides whether it knows it.

#pragma once

/// Authentication mode.
///
/// | value                     | MediaTek       | Realtek station | Realtek access point |
/// |---------------------------|----------------|-----------------|----------------------|
/// | AUTH_OPEN                 | open           | open            | open                 |
/// | AUTH_SHARED               | automatic WEP  | fails           | open                 |
/// | AUTH_WPAPSK               | WPA            | WPA             | WPA                  |
/// | AUTH_WPA2                 | WPA            | fails           | open                 |
/// | AUTH_RESERVED_4           | WPA            | fails           | open                 |
/// | AUTH_WPA2PSK              | WPA2           | WPA2            | WPA2                 |
/// | AUTH_RESERVED_6           | automatic WEP  | fails           | open                 |
/// | AUTH_MIXED_PSK            | WPA and WPA2   | fails           | WPA and WPA2         |
/// | 8 and above               | fails          | fails           | open                 |
enum auth_from_cam : unsigned char {
    AUTH_OPEN = 0,       ///< open system
    AUTH_SHARED = 1,     ///< shared key (WEP)
    AUTH_WPAPSK = 2,     ///< WPA personal
    AUTH_WPA2 = 3,       ///< WPA2 as the driver reports it without a PSK suffix
    AUTH_RESERVED_4 = 4, ///< reserved
    AUTH_WPA2PSK = 5,    ///< WPA2 personal
    AUTH_RESERVED_6 = 6, ///< reserved
    AUTH_MIXED_PSK = 7,  ///< WPA and WPA2 personal, mixed
};

/// Cipher. On MediaTek 5 and above fail. A Realtek station negotiates its cipher and uses none of
/// this; a Realtek access point offers both ciphers for every value but ENC_TKIP and ENC_AES.
enum enc_from_cam : unsigned char {
    ENC_NONE = 0,     ///< no encryption
    ENC_WEP = 1,      ///< WEP
    ENC_TKIP = 2,     ///< TKIP
    ENC_AES = 3,      ///< AES (CCMP)
    ENC_TKIP_AES = 4, ///< TKIP and AES
};

/// How the MediaTek AP-client joins a network. Only the value 1 is told apart; every other value
/// joins by SSID.
enum set_apcli_from_cam : unsigned char {
    APCLI_BY_SSID = 0,  ///< join by SSID alone, on any channel
    APCLI_BY_BSSID = 1, ///< join the given BSSID on the given channel
};
