// SPDX-License-Identifier: MIT
// A scan's events, read by the library and by libiw.

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <iwlib.h>

#include "bench/allocations.h"
#include "bench/networks.h"
#include "realtek/scan_events.h"
#include "realtek/scan_results.h"
#include "vcamera/model/scan_events.h"

using libwlan::byte_reader;
using namespace libwlan::realtek;

namespace {

constexpr int vendor_bytes = 120; // in elements that nobody reads

void scan_library(benchmark::State& state) {
    const std::string stream =
        scan_events(networks(state.range(0)), frequency_form::kernel, vendor_bytes);
    const byte_reader events{reinterpret_cast<const unsigned char*>(stream.data()), stream.size()};
    std::vector<sites> list;
    list.reserve(max_scan_results);
    const std::size_t before = allocations;
    while (state.KeepRunning()) {
        list.clear();
        const std::unique_ptr<scan_result_t[]> results(new scan_result_t[max_scan_results]);
        const int found = walk_scan_events(events, results.get(), nullptr);
        convert_scan_results(results.get(), found, 100, WIRELESS_MODE_INFRA, list);
    }
    state.counters["allocations"] = allocations_of_a_run(before);
    state.SetItemsProcessed(state.iterations() * state.range(0));
    if (static_cast<std::int64_t>(list.size()) != state.range(0))
        state.SkipWithError("the library lost networks");
}

/// The same events as a kernel of this machine's word size lays them out: payloads are aligned to
/// 8 bytes, and so are the bytes that follow a length.
std::string host_layout(const std::string& stream) {
    const std::string padding(4, '\0');
    std::string result;
    for (std::size_t at = 0; at < stream.size();) {
        std::uint16_t head[2]; // length and command
        std::memcpy(head, &stream[at], sizeof head);
        std::string payload = stream.substr(at + sizeof head, head[0] - sizeof head);
        at += head[0];
        if (head[1] == SIOCGIWESSID || head[1] == SIOCGIWENCODE || head[1] == IWEVCUSTOM ||
            head[1] == IWEVGENIE)
            payload.insert(4, padding);
        head[0] = static_cast<std::uint16_t>(sizeof head + padding.size() + payload.size());
        result.append(reinterpret_cast<const char*>(head), sizeof head);
        result += padding + payload;
    }
    return result;
}

/// Keeps what libiw's own scan reading keeps of an event. An address opens a record.
void keep(const iw_event& event, wireless_scan*& record, const iw_range& range) {
    if (event.cmd == SIOCGIWAP) {
        auto* opened = new wireless_scan{};
        opened->next = std::exchange(record, opened);
        record->ap_addr = event.u.ap_addr;
    } else if (event.cmd == SIOCGIWFREQ) {
        record->b.freq = iw_freq_to_channel(iw_freq2float(&event.u.freq), &range);
    } else if (event.cmd == SIOCGIWMODE) {
        record->b.mode = static_cast<int>(event.u.mode);
    } else if (event.cmd == SIOCGIWESSID) {
        std::memcpy(record->b.essid, event.u.essid.pointer, event.u.essid.length);
    } else if (event.cmd == SIOCGIWENCODE) {
        record->b.key_flags = event.u.data.flags;
    } else if (event.cmd == IWEVQUAL) {
        record->stats.qual = event.u.qual;
    }
}

void scan_libiw(benchmark::State& state) {
    std::string stream =
        host_layout(scan_events(networks(state.range(0)), frequency_form::kernel, vendor_bytes));
    iw_range range{};
    for (range.num_frequency = 0; range.num_frequency < 13; ++range.num_frequency) {
        range.freq[range.num_frequency] = {2412 + 5 * range.num_frequency, 6,
                                           static_cast<__u8>(range.num_frequency + 1), 0};
    }
    std::int64_t found = 0;
    while (state.KeepRunning()) {
        stream_descr events{};
        iw_event event{};
        wireless_scan* records = nullptr;
        iw_init_event_stream(&events, stream.data(), static_cast<int>(stream.size()));
        while (iw_extract_event_stream(&events, &event, 22) > 0)
            keep(event, records, range);
        for (found = 0; records != nullptr; ++found)
            delete std::exchange(records, records->next);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    if (found != state.range(0))
        state.SkipWithError("libiw lost networks");
}

BENCHMARK(scan_library)->Arg(8)->Arg(64)->Arg(200);
BENCHMARK(scan_libiw)->Arg(8)->Arg(64)->Arg(200);

} // namespace
