// SPDX-License-Identifier: MIT
// Survey lists, as both families fill them.

#pragma once

#include <vector>

#include "libwlan/sites.h"

namespace libwlan {

// Records that are equivalent in an order end in no particular one.
void sort_by_signal(std::vector<sites>& list);
void sort_by_name(std::vector<sites>& list);

/// @return the entry of `list` that has this name, or list.end(). Upper and lower case differ.
std::vector<sites>::iterator find_name(std::vector<sites>& list,
                                       const char (&name)[sizeof sites::ssid]);

} // namespace libwlan
