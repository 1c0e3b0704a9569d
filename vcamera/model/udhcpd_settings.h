// SPDX-License-Identifier: MIT
// udhcpd's configuration file, judged as busybox's udhcpd 1.35 judges it: a key that it does not
// know is passed over, a value that it cannot read is told and left out, and an option that it does
// not know or an empty pool ends it.

#pragma once

#include <map>

#include "vcamera/model/setting_values.h"

struct udhcpd_settings {
    std::vector<std::string> messages;
    bool ends = false; // whether the last message is its last word
    std::map<std::string, std::string> values;
};

/// @param path names the file in messages.
udhcpd_settings read_udhcpd_settings(const std::string& text, const std::string& path);
