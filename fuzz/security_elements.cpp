// SPDX-License-Identifier: MIT
// Hostile input: WPA and RSN elements.

#include "realtek/scan.h"

#include "fuzz/fuzz_check.h"
#include "libwlan/scan.h"

using libwlan::byte_reader;
using namespace libwlan::realtek;

namespace {

/// An element that is cut off has no bit but those of the whole one.
void check(unsigned int (*read)(byte_reader), byte_reader whole, unsigned int known_bits) {
    const unsigned int bits = read(whole);
    fuzz_check((bits & ~known_bits) == 0);
    for (std::size_t length = 2; length < whole.size(); ++length)
        fuzz_check((read({whole.data(), length}) & ~bits) == 0);
}

} // namespace

/// One information element with its ID and length, read as either kind.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 2 || size > 257)
        return 0;
    check(read_wpa_element, {data, size}, WPA_PARSED | 0x7F80U);
    check(read_rsn_element, {data, size}, RSN_PARSED | 0x7F8000U);
    return 0;
}
