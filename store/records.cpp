// SPDX-License-Identifier: MIT
// The records that the library asks for.

#include "libwlan/store.h"
#include "store/failure.h"
#include "store/wireless_sections.h"

namespace {

using store::config_file;
using store::field;
using store::form;
using store::need;

// clang-format off
constexpr std::initializer_list<field> dhcp_server_fields = {
    // key         form        offset                                          most  default  words
    {"address",    form::ipv4, offsetof(_dhcp_server_setting, server_address), 31,   nullptr, {}},
    {"pool_start", form::ipv4, offsetof(_dhcp_server_setting, pool_start),     31,   nullptr, {}},
    {"pool_end",   form::ipv4, offsetof(_dhcp_server_setting, pool_end),       31,   nullptr, {}},
    {"netmask",    form::ipv4, offsetof(_dhcp_server_setting, subnet_mask),    31,   nullptr, {}},
};

// wpa_supplicant takes no longer ones, and without it there is no station.
constexpr std::initializer_list<field> system_fields = {
    // key           form        offset                                  most default  words
    {"model",        form::text, offsetof(_system_setting, model_name),    32, nullptr, {}},
    {"manufacturer", form::text, offsetof(_system_setting, manufacturer),  64, nullptr, {}},
};
// clang-format on

constexpr store::section dhcp_server_section = {"dhcp_server", dhcp_server_fields};
constexpr store::section system_section = {"system", system_fields};

template <typename Record>
Record read_record(const config_file& file, const store::section& section) {
    Record filled = {};
    read_section(file, section, need::whole_section, &filled);
    return filled;
}

/// Fills the caller's record once everything was found to be good.
template <typename Record, typename Reader>
int fill(Record* setting, const Reader& read) {
    return store::answer([&] {
        const std::string path = config_file::path();
        if (setting == nullptr)
            throw store::failure(path + ": no record to fill was given");
        *setting = read(config_file::load(path));
    });
}

} // namespace

int cam_get_ap(_wireless_setting* setting) {
    return fill(setting, [](const config_file& file) {
        return read_wireless(file, need::whole_section, need::what_is_there);
    });
}

int cam_get_client(_wireless_setting* setting) {
    return fill(setting, [](const config_file& file) {
        return read_wireless(file, need::what_is_there, need::whole_section);
    });
}

int cam_get_system(_system_setting* setting) {
    return fill(setting, [](const config_file& file) {
        return read_record<_system_setting>(file, system_section);
    });
}

int cam_get_dhcp_server(_dhcp_server_setting* setting) {
    return fill(setting, [](const config_file& file) {
        return read_record<_dhcp_server_setting>(file, dhcp_server_section);
    });
}
