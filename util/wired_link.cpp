#include <cstdio>
#include <string_view>

#include "libwlan/link_status.h"
#include "util/program.h"

namespace {

// Register 1 of PHY 0 of the Ethernet switch: the MII basic status register.
constexpr const char* read_status_register = "mii_mgr -g -p 0 -r 01";

// Ending of a status value with the link-up and auto-negotiation-complete bits set.
constexpr std::string_view link_up_digits = "6d";

} // namespace

int probe_link() {
    // Run once for the console, where people look for its line, and once for its answer.
    run_program(read_status_register);
    FILE* tool = popen(read_status_register, "r");
    if (tool == nullptr)
        return 0;
    char answer[128];
    const std::string_view status(answer, std::fread(answer, 1, sizeof answer, tool));
    pclose(tool);
    return status.find(link_up_digits) != std::string_view::npos ? 1 : 0;
}
