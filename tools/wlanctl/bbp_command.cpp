// SPDX-License-Identifier: MIT
// wlanctl bbp.

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "libwlan/baseband.h"

#include "adapter.h"
#include "commands.h"

namespace {

struct register_change {
    std::string interface;
    std::string number;
    unsigned int value = 0;
    unsigned int mask = 0;
};

/// The driver takes anything behind a "=" for a value to write.
std::string number_problem(const std::string& text) {
    const bool fits = !text.empty() && text.size() <= 8 &&
                      text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    return fits ? "" : "a register is a number of up to 8 hexadecimal digits: 66";
}

answer apply(register_change& change) {
    if (!find_adapter().mediatek) {
        throw CLI::ValidationError("a Realtek adapter has no such registers",
                                   "bbp is for MediaTek");
    }
    const std::string what = "register " + change.number + " of " + change.interface;
    if (run_set_bbp(change.interface.data(), change.number.data(), static_cast<int>(change.value),
                    static_cast<int>(change.mask)) != 0) {
        throw failure(what + ": not changed",
                      "the driver must know the register, and the interface must be up; see: "
                      "wlanctl adapter");
    }
    return {{"done", what + ": changed"}};
}

} // namespace

void add_bbp_command(CLI::App& wlanctl, answer& result) {
    const auto change = std::make_shared<register_change>();
    auto& command = *wlanctl.add_subcommand("bbp", "Change bits of a baseband register (MediaTek)");
    command.add_option("IFACE", change->interface, "Interface")
        ->required()
        ->check(CLI::IsMember({"ra0", "wlan0", "apclii0"}));
    command.add_option("REG", change->number, "Register, as the driver writes it")
        ->required()
        ->check(number_problem);
    command.add_option("VALUE", change->value, "New bits, decimal or 0x...")->required();
    command.add_option("MASK", change->mask, "Which bits they replace")->required();
    command.footer("For tuning the radio with the chip's manual at hand: a wrong value can keep it "
                   "from hearing or\nsending until the adapter is plugged in again.\n"
                   "  wlanctl bbp ra0 66 0x40 0xf0    the upper four bits become 4, the lower "
                   "stay");
    command.callback([change, &result] { result = apply(*change); });
}
