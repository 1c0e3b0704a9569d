// SPDX-License-Identifier: MIT
// Programs of the camera's system image.

#include "base/program.h"

#include <cstdlib>

namespace libwlan {

int run_program(const char* command_line) {
    return std::system(command_line);
}

unique_pipe read_program(const char* command_line) {
    return unique_pipe(popen(command_line, "r"));
}

} // namespace libwlan
