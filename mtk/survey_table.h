#pragma once

// The driver's survey table: a header line, then one line per access point in fixed columns. Pure
// reading: no driver, no allocation, nothing outside the given text.

#include <optional>
#include <string_view>

#include "libwlan/sites.h"

/// Cuts blanks off both ends. A carriage return is no blank to the driver.
std::string_view trimmed(std::string_view text);

/// What stands between the first character, taken to be the opening quote, and the last quote.
/// Without a closing quote everything after the first character; none for an empty text.
std::optional<std::string_view> unquoted(std::string_view text);

/// Takes the next line that is not empty off the front of `text`; none when there is no more.
std::optional<std::string_view> take_line(std::string_view& text);

/// Whether a header announces the version-2 columns.
bool is_version_2_header(std::string_view header);

/// Reads one line of a version-1 table.
/// @return the access point, or none when the line is to be dropped.
std::optional<sites> read_row(std::string_view line);

/// Reads one line of a version-2 table.
/// @param foreign_type receives the network type when it is the reason for dropping the line.
/// @return the access point, or none when the line is to be dropped.
std::optional<sites> read_row_v2(std::string_view line,
                                 std::optional<std::string_view>& foreign_type);
