// SPDX-License-Identifier: MIT
// The product information: region codes.

#include <atomic>
#include <cstring>

#include "libwlan/store.h"
#include "store/failure.h"
#include "store/field.h"

namespace {

struct alignas(2) region_codes { // in one piece, for std::atomic
    unsigned char band_2g;
    unsigned char band_5g;
};

constexpr std::initializer_list<store::field> region_fields = {
    {"band_2g", store::form::byte, offsetof(region_codes, band_2g), 0, "0", {}},
    {"band_5g", store::form::byte, offsetof(region_codes, band_5g), 0, "0", {}},
};

constexpr store::section region_section = {"region", region_fields};

/// What was read last. The library asks at every mode, and a camera whose store cannot be read for
/// a moment must not change the channels that it may use.
std::atomic<region_codes> last_read{};

} // namespace

PIB::PIB() {
    region_ = 0;
    region_a_band_ = 0;
    std::memset(own_, 0, sizeof own_);
}

PIB::~PIB() = default;

int PIB::init() {
    const int result = store::answer([] {
        const auto file = store::config_file::load(store::config_file::path());
        region_codes codes = {};
        read_section(file, region_section, store::need::what_is_there, &codes);
        last_read = codes;
    });
    const region_codes codes = last_read;
    region_ = codes.band_2g;
    region_a_band_ = codes.band_5g;
    return result;
}

// NOLINTNEXTLINE(readability-make-member-function-const): part of the interface
int PIB::getRegion() {
    return region_;
}

// NOLINTNEXTLINE(readability-make-member-function-const)
int PIB::getRegionABand() {
    return region_a_band_;
}
