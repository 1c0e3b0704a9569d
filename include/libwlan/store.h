// SPDX-License-Identifier: MIT
/// @file
/// The camera's configuration store as libwlan sees it. The records and functions belong to the
/// store's library, which the camera's firmware links; libwlan only imports them. The records cross
/// by address, so their layout is the store's and is checked byte for byte below. Bytes named
/// `own_…` are the store's and are never read or written by libwlan.
///
/// libwlan zeroes a record before the store fills it, and ends SSIDs, BSSIDs and keys at the last
/// byte of their field when the store did not. A store may throw: the exception reaches the caller
/// of the request.

#pragma once

#include <cstddef>
#include <cstdint>

#include "libwlan/api.h"
#include "libwlan/settings.h"

/// Client (station, AP-client) block and access-point block in one record.
struct _wireless_setting {
    unsigned char client_enabled;         ///< 1 once the client block holds a network
    unsigned char own_1[1];               ///< the store's
    auth_from_cam client_auth;            ///< authentication mode of the network to join
    unsigned char own_3[1];               ///< the store's
    enc_from_cam client_enc;              ///< its cipher
    set_apcli_from_cam client_apcli_mode; ///< how to join it
    unsigned char own_6[2];               ///< the store's
    std::int32_t client_channel;          ///< 0 automatic, 1 to 14 2.4 GHz, 15 and above 5 GHz
    char client_ssid[64];                 ///< NUL-terminated
    char client_bssid[32];                ///< NUL-terminated, six hexadecimal octets with colons,
                                          ///< of which 30 characters are sent
    char client_key[256];                 ///< NUL-terminated WEP key or WPA passphrase
    unsigned char client_key_index;       ///< WEP default key number, 1 to 4 for the driver
    unsigned char own_365[2];             ///< the store's
    char ap_ssid[64];                     ///< NUL-terminated
    char ap_key[256];                     ///< NUL-terminated
    auth_from_cam ap_auth;                ///< authentication mode of the access point
    enc_from_cam ap_enc;                  ///< its cipher
    unsigned char own_689[7];             ///< the store's
};

static_assert(offsetof(_wireless_setting, client_enabled) == 0, "the store's layout");
static_assert(offsetof(_wireless_setting, client_auth) == 2, "the store's layout");
static_assert(offsetof(_wireless_setting, client_enc) == 4, "the store's layout");
static_assert(offsetof(_wireless_setting, client_apcli_mode) == 5, "the store's layout");
static_assert(offsetof(_wireless_setting, client_channel) == 8, "the store's layout");
static_assert(offsetof(_wireless_setting, client_ssid) == 12, "the store's layout");
static_assert(offsetof(_wireless_setting, client_bssid) == 76, "the store's layout");
static_assert(offsetof(_wireless_setting, client_key) == 108, "the store's layout");
static_assert(offsetof(_wireless_setting, client_key_index) == 364, "the store's layout");
static_assert(offsetof(_wireless_setting, ap_ssid) == 367, "the store's layout");
static_assert(offsetof(_wireless_setting, ap_key) == 431, "the store's layout");
static_assert(offsetof(_wireless_setting, ap_auth) == 687, "the store's layout");
static_assert(offsetof(_wireless_setting, ap_enc) == 688, "the store's layout");
static_assert(sizeof(_wireless_setting) == 696, "the store's layout");

/// Addresses for the DHCP server behind the access point, each a NUL-terminated dotted IPv4
/// address. `server_address` is put into a shell's command line as it is.
struct _dhcp_server_setting {
    char server_address[32]; ///< the access-point interface's own address, router and DNS server
    char pool_start[32];     ///< first address given out
    char pool_end[32];       ///< last address given out
    char subnet_mask[32];    ///< of the access point's network
};

static_assert(offsetof(_dhcp_server_setting, server_address) == 0, "the store's layout");
static_assert(offsetof(_dhcp_server_setting, pool_start) == 32, "the store's layout");
static_assert(offsetof(_dhcp_server_setting, pool_end) == 64, "the store's layout");
static_assert(offsetof(_dhcp_server_setting, subnet_mask) == 96, "the store's layout");
static_assert(sizeof(_dhcp_server_setting) == 128, "the store's layout");

/// The camera's identity. The store decides how long the record is; libwlan gives it room for these
/// 1024 bytes.
struct _system_setting {
    unsigned char own_0[64]; ///< the store's
    char model_name[160];    ///< NUL-terminated
    char manufacturer[800];  ///< NUL-terminated; the store's own bytes follow the text
};

static_assert(offsetof(_system_setting, model_name) == 64, "the store's layout");
static_assert(offsetof(_system_setting, manufacturer) == 224, "the store's layout");
static_assert(sizeof(_system_setting) == 1024, "the store's layout");

/// Follow-up actions for cam_set_client(); all bytes zero asks for none. The store decides how long
/// the record is; libwlan gives it room for these 256 bytes.
struct _cam_actions {
    unsigned char own_0[256]; ///< the store's
};

extern "C" {

/// Fills the whole record; the access-point and repeater modes read both blocks of it.
/// @return 0, or non-zero on failure (the record is then not used).
LIBWLAN_API int cam_get_ap(_wireless_setting* setting);

/// Fills the whole record; the station mode reads its client block.
/// @return 0, or non-zero on failure (the record is then not used).
LIBWLAN_API int cam_get_client(_wireless_setting* setting);

/// Stores the client block of the record and runs the given actions. libwlan passes a record that
/// cam_get_client() filled, no actions, and 0 for both flags.
/// @return 0, or non-zero on failure (nothing is then stored).
LIBWLAN_API int cam_set_client(_wireless_setting* setting, _cam_actions* actions,
                               unsigned char first_flag, unsigned char second_flag);

/// Fills the system record.
/// @return 0, or non-zero on failure (the record is then not used).
LIBWLAN_API int cam_get_system(_system_setting* setting);

/// Fills the DHCP server record.
/// @return 0, or non-zero on failure (the record is then not used).
LIBWLAN_API int cam_get_dhcp_server(_dhcp_server_setting* setting);
}

/// The store's product information: here, the regulatory region codes.
class LIBWLAN_API PIB {
public:
    PIB();
    virtual ~PIB();

    /// Loads the product information.
    /// @return what the store says; libwlan does not look at it.
    int init();

    /// @return the 2.4 GHz country region code.
    int getRegion();

    /// @return the 5 GHz country region code.
    int getRegionABand();

private:
    int region_;
    int region_a_band_;
    unsigned char own_[496]; // a store's own class may be larger than these two numbers
};
