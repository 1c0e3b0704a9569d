// SPDX-License-Identifier: MIT
// Hostile input: the MediaTek driver's survey table.

#include <algorithm>
#include <cstring>
#include <set>
#include <string>

#include "fuzz/fuzz_check.h"
#include "libwlan/wlan.h"
#include "mtk/survey_table.h"

using namespace libwlan::mtk;

namespace {

std::size_t rows_of(std::string_view table) {
    std::size_t lines = 0;
    while (take_line(table))
        ++lines;
    return lines - std::min<std::size_t>(lines, 1); // the header
}

} // namespace

/// A table of either layout.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::string table(data, data + size);
    wlan radio;
    radio.debug_level = 0;
    radio.site_survey_v2 = 0;
    std::vector<sites> list;
    const int result = radio.parse_site_survey(list, table.data());

    std::set<std::string> names;
    for (const sites& site : list) {
        fuzz_check(strnlen(site.ssid, sizeof site.ssid) < sizeof site.ssid);
        fuzz_check(site.channel >= 1 && site.rssi <= 0 && site.signal >= 0);
        names.insert(site.ssid);
    }
    if (radio.site_survey_v2 == 0) {
        fuzz_check((result == 0) == (list.size() == rows_of(table.c_str())));
    } else {
        fuzz_check(names.size() == list.size());
    }
    return 0;
}
