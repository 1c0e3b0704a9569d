// SPDX-License-Identifier: MIT
// How values are written in the file.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace store {

/// A value as the file has it: in quotes, with \" \\ \n and \xHH, on one or more lines; or, on one
/// line only, as it stands.
using value_lines = std::vector<std::string>;

/// @return nothing when the quotes are not well formed.
std::optional<std::string> decode_value(const value_lines& value);

value_lines encode_value(std::string_view text);

/// Appends the byte, or \xHH where a terminal or an editor would not show it as it is.
void append_printable(std::string& text, char byte);

} // namespace store
