#include "realtek/scan_events.h"

#include <algorithm>
#include <vector>

#include "fuzz/must.h"

namespace {

/// What is kept of an element is the whole of it.
void check_element(const unsigned char* element, std::int32_t length, int id) {
    must(length == 0 || (length <= 40 && element[0] == id && element[1] + 2 == length));
}

} // namespace

/// The events of a scan.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::vector<scan_result_t> results(max_scan_results);
    const int count = walk_scan_events({data, size}, results.data(), nullptr);
    for (const scan_result_t& result : results) {
        must(result.ssid_len >= 0 && result.ssid_len <= 32);
        check_element(result.wpa_ie, result.wpa_ie_len, 221);
        check_element(result.rsn_ie, result.rsn_ie_len, 48);
    }
    const auto* unused = reinterpret_cast<const unsigned char*>(results.data() + count);
    const auto* end = reinterpret_cast<const unsigned char*>(results.data() + results.size());
    must(std::all_of(unused, end, [](unsigned char byte) { return byte == 0; }));
    return 0;
}
