// SPDX-License-Identifier: MIT
// Hostile input: the events of a scan.

#include "realtek/scan_events.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "fuzz/fuzz_check.h"

using namespace libwlan::realtek;

namespace {

/// What is kept of an element is the whole of it.
void check_element(const unsigned char* element, std::int32_t length, int id) {
    fuzz_check(length >= 0 && length <= 40);
    fuzz_check(length == 0 || element[0] == id);
    fuzz_check(length < 2 ||
               element[1] + 2 == length); // one byte is what a length byte of 255 leaves
}

} // namespace

/// The events of a scan.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::vector<scan_result_t> results(max_scan_results);
    const int count = walk_scan_events({data, size}, results.data(), nullptr);
    for (const scan_result_t& result : results) {
        fuzz_check(result.ssid_len >= 0 && result.ssid_len <= 32);
        check_element(result.wpa_ie, result.wpa_ie_len, 221);
        check_element(result.rsn_ie, result.rsn_ie_len, 48);
    }
    const auto* unused = reinterpret_cast<const unsigned char*>(results.data() + count);
    const auto* end = reinterpret_cast<const unsigned char*>(results.data() + results.size());
    fuzz_check(std::all_of(unused, end, [](unsigned char byte) { return byte == 0; }));
    return 0;
}
