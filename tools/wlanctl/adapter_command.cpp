// SPDX-License-Identifier: MIT
// wlanctl adapter.

#include <CLI/CLI.hpp>

#include "adapter.h"
#include "commands.h"

namespace {

answer describe(const adapter& found) {
    answer interfaces = answer::list();
    for (const wifi_interface& interface : found.interfaces) {
        interfaces.push_back(
            {{"name", interface.name}, {"role", interface.role}, {"state", interface.state}});
    }
    return {{"family", found.mediatek ? "mediatek" : "realtek"}, {"interfaces", interfaces}};
}

} // namespace

void add_adapter_command(CLI::App& wlanctl, answer& result) {
    wlanctl.add_subcommand("adapter", "Tell which adapter is plugged in, and its interfaces")
        ->footer("With --json: family, interfaces [name, role, state].")
        ->callback([&result] { result = describe(find_adapter()); });
}
