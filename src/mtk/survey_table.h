// SPDX-License-Identifier: MIT
// The driver's survey table: a header line, then one line per access point in fixed columns. Pure
// reading: no driver, no allocation, nothing outside the given text.

#pragma once

#include <optional>
#include <string_view>

#include "libwlan/sites.h"

namespace libwlan::mtk {

/// Cuts blanks off both ends. A carriage return is no blank to the driver.
std::string_view trimmed(std::string_view text);

/// Takes the next line that is not empty off the front of `text`; none when there is no more.
std::optional<std::string_view> take_line(std::string_view& text);

/// Whether a header announces the version-2 columns.
bool is_version_2_header(std::string_view header);

/// Reads one trimmed line of a version-1 table into a record that is all zero.
/// @return false when the line is to be dropped.
bool read_row(std::string_view line, sites& site);

/// Reads one trimmed line of a version-2 table into a record that is all zero. The network type
/// stays the driver's own.
/// @return false when the line is to be dropped.
bool read_row_v2(std::string_view line, sites& site);

} // namespace libwlan::mtk
