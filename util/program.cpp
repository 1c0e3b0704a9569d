#include "util/program.h"

#include <cstdlib>

int run_program(const char* command_line) {
    return std::system(command_line);
}
