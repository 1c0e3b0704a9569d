#include <cstring>

#include "libwlan/store.h"
#include "store/failure.h"
#include "store/field.h"

namespace {

struct region_codes {
    unsigned char band_2g;
    unsigned char band_5g;
};

constexpr std::initializer_list<store::field> region_fields = {
    {"band_2g", store::form::byte, offsetof(region_codes, band_2g), 0, "0", {}},
    {"band_5g", store::form::byte, offsetof(region_codes, band_5g), 0, "0", {}},
};

constexpr store::section region_section = {"region", region_fields};

} // namespace

PIB::PIB() {
    region_ = 0;
    region_a_band_ = 0;
    std::memset(own_, 0, sizeof own_);
}

PIB::~PIB() = default;

int PIB::init() {
    return store::answer([this] {
        const auto file = store::config_file::load(store::config_file::path());
        region_codes codes = {};
        read_section(file, region_section, store::need::what_is_there, &codes);
        region_ = codes.band_2g;
        region_a_band_ = codes.band_5g;
    });
}

// NOLINTNEXTLINE(readability-make-member-function-const): camera firmware declares it like this
int PIB::getRegion() {
    return region_;
}

// NOLINTNEXTLINE(readability-make-member-function-const)
int PIB::getRegionABand() {
    return region_a_band_;
}
