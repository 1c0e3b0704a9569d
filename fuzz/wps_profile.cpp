// SPDX-License-Identifier: MIT
// Hostile input: the network that a push-button session obtained.

#include "mtk/driver_answers.h"

#include <string>

#include "fuzz/fuzz_check.h"

using namespace libwlan::mtk;

namespace {

std::string text_of(const wps_profile& profile) {
    std::string text = std::string("SSID= ") + profile.ssid + "\nAuthMode= " + profile.auth +
                       "\nEncrypType= " + profile.enc + "\nDefaultKeyID= " + profile.number;
    return profile.key == nullptr ? text : text + "\nKey1Str= " + profile.key;
}

} // namespace

/// A profile's text; what was read reads the same when it is written anew.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::string text(data, data + size);
    const auto profile = read_wps_profile(text.data());
    if (!profile)
        return 0;
    fuzz_check(profile->ssid == text.data() + text.find('=', text.find("SSID")) + 2);
    const std::string written = text_of(*profile);
    std::string copy = written; // reading ends its lines in place
    const auto again = read_wps_profile(copy.data());
    fuzz_check(again && text_of(*again) == written);
    return 0;
}
