// SPDX-License-Identifier: MIT
// Text in columns.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

using text_row = std::vector<std::string>;

/// Columns on a terminal, as libc knows them of UTF-8 where it has the C.UTF-8 locale: some
/// characters take two, some none. Elsewhere one each.
std::size_t width(const std::string& text);

/// Fills a text up with blanks.
std::string padded(const std::string& text, std::size_t columns);

/// Shortens a text that is wider: it ends in '~' then.
std::string cut(const std::string& text, std::size_t columns);

/// Rows whose cells stand below one another, two blanks apart.
std::string aligned(const std::vector<text_row>& rows, const std::string& indent = "");

/// Breaks a text into lines between its words.
std::vector<std::string> wrapped(const std::string& text, std::size_t columns);
