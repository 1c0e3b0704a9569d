#include "realtek/security_elements.h"

#include "fuzz/must.h"
#include "libwlan/scan.h"

namespace {

/// An element that is cut off has no bit but those of the whole one.
void check(unsigned int (*read)(byte_view), byte_view whole, unsigned int known_bits) {
    const unsigned int bits = read(whole);
    must((bits & ~known_bits) == 0);
    for (std::size_t length = 2; length < whole.size(); ++length)
        must((read({whole.data(), length}) & ~bits) == 0);
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
