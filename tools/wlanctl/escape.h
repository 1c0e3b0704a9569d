// SPDX-License-Identifier: MIT
// Names from the air, made fit for a terminal.

#pragma once

#include <string>
#include <string_view>

/// Makes text from the air or the store safe to print: bytes that are no valid UTF-8, and
/// characters that would steer a terminal or reverse its writing direction, become \xHH. So does a
/// backslash, so that no name can pass for an escaped one, and a blank at the end, to be seen.
std::string escape(std::string_view text);
