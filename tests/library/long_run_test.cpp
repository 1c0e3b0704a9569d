// SPDX-License-Identifier: MIT
// Cameras run for years: thousands of requests in one process leave what one request leaves, and
// nothing else.

#include <cstring>

#include <sys/wait.h>

#include "tests/support/camera_test.h"
#include "tests/support/operations.h"
#include "tests/support/resource_usage.h"

namespace {

/// What is repeated: so many counts of what is held, with so many runs before each.
constexpr struct {
    const char* name; // or a part of it
    int counts;
    int runs;
} repetitions[] = {{"survey", 1, 5000}, {"access point", 6, 12}, {"station", 6, 12}, {"repeater", 6, 12}};

class long_run : public camera_test {
protected:
    /// Runs an operation again and again, with its waits on the camera's clock.
    /// @return how many consoles each run left open.
    int run(const operation& operation, int times) {
        const auto repeat = [&] {
            int failures = 0;
            for (int i = 0; i < times; ++i) {
                failures += operation.run() == 0 ? 0 : 1;
                let_daemons_start(); // so that the next run finds them
            }
            return failures;
        };
        resource_usage gained;
        for (int tries = 0; tries == 0 || (gained.heap > 0 && tries < 5); ++tries) { // a leak grows at every time
            close_leftovers();
            const resource_usage before = count_resources();
            EXPECT_EQ(watch(repeat).result, 0);
            gained = gained_since(before);
        }
        EXPECT_EQ(gained.sockets, operation.keeps * times);
        EXPECT_EQ(gained.consoles % times, 0);
        EXPECT_EQ(gained.others, 0);
        EXPECT_LE(gained.heap, 0);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1); // no child is left
        close_leftovers();
        return gained.consoles / times;
    }
};

TEST_F(long_run, thousands_of_requests_leave_no_more) {
    int runs = 0;
    for (const operation& operation : operations) {
        for (const auto& repetition : repetitions) {
            if (std::strstr(operation.name, repetition.name) == nullptr)
                continue;
            SCOPED_TRACE(std::string(operation.family) + " " + operation.name);
            plug_in(camera_for(operation));
            watch(operation.run); // libc keeps a little at the first time
            int left = 0;
            for (int count = 0; count < repetition.counts; ++count)
                left = run(operation, repetition.runs);
            runs += repetition.counts * repetition.runs;
            std::printf("%-9s %-27s %2d consoles stay open\n", operation.family, operation.name, left);
            EXPECT_TRUE(left == 0 || operation.name != std::string("survey"));
        }
    }
    std::printf("%d surveys and mode changes\n", runs);
    EXPECT_GE(runs, 11000);
}

} // namespace
