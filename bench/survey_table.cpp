// SPDX-License-Identifier: MIT
// The survey table of the MediaTek/Ralink driver, as full as the driver's buffer allows.

#include <cstdint>
#include <string>
#include <vector>

#include "bench/allocations.h"
#include "bench/networks.h"
#include "libwlan/wlan.h"
#include "vcamera/model/mtk_survey.h"

namespace {

void survey_table(benchmark::State& state, int layout) {
    const air air = networks(AIR_MAX);
    std::string table(8192, '\0');
    table.resize(mtk_survey_table(air.points, air.count, layout, table.data(), table.size()));
    std::vector<sites> list;
    list.reserve(AIR_MAX);
    wlan radio;
    radio.debug_level = 0;
    radio.site_survey_v2 = 0;
    const std::size_t before = allocations;
    while (state.KeepRunning()) {
        list.clear();
        if (radio.parse_site_survey(list, table.data()) != 0)
            state.SkipWithError("a line was rejected");
    }
    state.counters["allocations"] = allocations_of_a_run(before);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(list.size()));
}

BENCHMARK_CAPTURE(survey_table, version_1, 1);
BENCHMARK_CAPTURE(survey_table, version_2, 2);

} // namespace
