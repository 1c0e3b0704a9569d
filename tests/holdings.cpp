#include "tests/holdings.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <malloc.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// Heap of an open stream that nothing was written to.
long heap_of_a_stream() {
    const std::size_t before = mallinfo2().uordblks;
    FILE* const stream = std::fopen("/dev/null", "w");
    const std::size_t size = mallinfo2().uordblks - before;
    std::fclose(stream);
    return static_cast<long>(size);
}

/// The open descriptors by what they are open on.
std::vector<std::pair<int, std::string>> descriptors() {
    std::vector<std::pair<int, std::string>> all;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        all.emplace_back(std::stoi(entry.path().filename()), fs::read_symlink(entry.path(), gone));
    }
    return all;
}

bool is_socket(const std::string& target) {
    return target.rfind("socket:", 0) == 0;
}

bool is_console(const std::string& target) {
    return target.find("/dev/console") != std::string::npos;
}

} // namespace

holdings count_holdings() {
    holdings held;
    held.heap = static_cast<long>(mallinfo2().uordblks);
    for (const auto& [number, target] : descriptors())
        ++(is_socket(target) ? held.sockets : is_console(target) ? held.consoles : held.others);
    return held;
}

holdings gained_since(const holdings& before) {
    const holdings after = count_holdings();
    holdings gained{after.sockets - before.sockets, after.consoles - before.consoles, after.others - before.others,
                    after.heap - before.heap};
    gained.heap -= gained.consoles * heap_of_a_stream();
    return gained;
}

void close_what_stays() {
    for (const auto& [number, target] : descriptors())
        if (is_socket(target) || is_console(target))
            close(number);
}
