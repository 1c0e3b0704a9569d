#pragma once

#include <vector>

#include "libwlan/sites.h"

/// Sorts a survey list. Equivalent records end in no particular order.
void sort_sites(std::vector<sites>& list, bool (*order)(sites, sites));
