// SPDX-License-Identifier: MIT
// Hostile input: the driver's answer about a baseband register.

#include "mtk/driver_answers.h"

#include <cstdio>
#include <string>

#include "fuzz/fuzz_check.h"

using namespace libwlan::mtk;

/// The driver's answer about a register; its value reads the same when it is written anew.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const auto value = read_bbp_answer(std::string(data, data + size).c_str());
    char written[64];
    std::snprintf(written, sizeof written, "\nBBP[0x%04X]:%08X ", 0x42U, value.value_or(0));
    fuzz_check(!value || read_bbp_answer(written) == value);
    return 0;
}
