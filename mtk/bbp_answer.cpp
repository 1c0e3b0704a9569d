#include "mtk/bbp_answer.h"

#include <cstdio>

std::optional<unsigned int> read_bbp_answer(const char* text) {
    // The driver writes the register as 0x0042: its 0 is the number, its x the letter.
    int number = 0;
    unsigned int reg = 0;
    unsigned int value = 0;
    if (std::sscanf(text, "\nBBP[%dx%04X]:%08x ", &number, &reg, &value) != 3)
        return std::nullopt;
    return value;
}
