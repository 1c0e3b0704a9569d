// SPDX-License-Identifier: MIT
// The page, put together by the build (embed.cmake).

#pragma once

#include <cstddef>

extern const char page_text[];
extern const std::size_t page_size;

/// The Content-Security-Policy that lets the page's own script and style run, and nothing else.
extern const char page_policy[];
