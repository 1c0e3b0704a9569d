#include <cstdio>

#include "libwlan/scan.h"

namespace {

constexpr int row_size = 16;
constexpr const char* separator =
    "-----------+-------------------------------------------------+-----------------\n";

void write_characters(FILE* out, const char* row, int length) {
    std::fputs("| ", out);
    for (int i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(row[i]);
        std::fputc(byte < 32 || byte > 127 ? ' ' : byte, out);
    }
    std::fputc('\n', out);
}

} // namespace

int dumpHexData(FILE* out, char* title, char* data, int length) {
    std::fprintf(out, "--- Hex Dump (%s) ---\n", title);
    std::fputs(separator, out);
    for (int i = 0; i < length; ++i) {
        const int column = i % row_size;
        if (column == 0)
            std::fprintf(out, "0x%08X | ",
                         static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(data + i)));
        std::fprintf(out, "%02x ", static_cast<unsigned char>(data[i]));
        const bool last = i == length - 1;
        if (column != row_size - 1 && !last)
            continue;
        for (int filler = column + 1; filler < row_size; ++filler)
            std::fputs("   ", out);
        write_characters(out, data + i - column, column + 1);
    }
    return std::fprintf(out, "%s", separator);
}
