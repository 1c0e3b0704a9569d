// SPDX-License-Identifier: MIT
// What this process holds open and on its heap.

#include "tests/support/resource_usage.h"

#include <cstdio>
#include <filesystem>
#include <string>

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

/// Calls with the number of each open descriptor and whether it is a socket or a console.
template <typename Use>
void for_each_descriptor(Use use) {
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = fs::read_symlink(entry.path(), gone);
        use(std::stoi(entry.path().filename()), target.rfind("socket:", 0) == 0,
            target.find("/dev/console") != std::string::npos);
    }
}

} // namespace

resource_usage count_resources() {
    resource_usage held;
    held.heap = static_cast<long>(mallinfo2().uordblks);
    for_each_descriptor([&](int /*number*/, bool socket, bool console) {
        ++(socket ? held.sockets : console ? held.consoles : held.others);
    });
    return held;
}

resource_usage gained_since(const resource_usage& before) {
    const resource_usage after = count_resources();
    resource_usage gained{after.sockets - before.sockets, after.consoles - before.consoles,
                          after.others - before.others, after.heap - before.heap};
    gained.heap -= gained.consoles * heap_of_a_stream();
    return gained;
}

void close_leftovers() {
    for_each_descriptor([](int number, bool socket, bool console) {
        if (socket || console)
            close(number);
    });
}
