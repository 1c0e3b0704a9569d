// Cameras run for years: thousands of requests in one process leave what one request leaves, and
// nothing else.

#include <algorithm>
#include <cerrno>

#include <sys/wait.h>

#include "tests/camera_test.h"
#include "tests/holdings.h"
#include "tests/operations.h"

namespace {

constexpr int surveys = 5000;    // on each family
constexpr int mode_changes = 72; // into each mode of each family: a thousand in all
constexpr int changes_between_counts = 12;

class long_run : public camera_test {
protected:
    /// Runs an operation again and again, with its waits on the camera's clock.
    /// @return how many consoles each run left open.
    int run(const operation& operation, int times) {
        const auto repeat = [&] {
            int results = 0;
            for (int i = 0; i < times; ++i)
                results |= operation.run();
            return results;
        };
        holdings gained;
        for (int tries = 0; tries == 0 || (gained.heap > 0 && tries < 5); ++tries) { // a leak grows at every time
            close_what_stays();
            const holdings before = count_holdings();
            EXPECT_EQ(watch(repeat).result, 0);
            gained = gained_since(before);
        }
        EXPECT_EQ(gained.sockets, operation.keeps * times);
        EXPECT_EQ(gained.consoles % times, 0);
        EXPECT_EQ(gained.others, 0);
        EXPECT_LE(gained.heap, 0);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
        close_what_stays();
        return gained.consoles / times;
    }
};

bool is_mode(const operation& operation) {
    const std::string name = operation.name;
    const auto modes = {"access point", "station", "repeater"};
    return std::any_of(modes.begin(), modes.end(),
                       [&](const char* mode) { return name.find(mode) != std::string::npos; });
}

TEST_F(long_run, ten_thousand_surveys_leave_nothing) {
    for (const operation& operation : operations) {
        if (operation.name != std::string("survey"))
            continue;
        SCOPED_TRACE(operation.family);
        plug_in(scene_for(operation));
        watch(operation.run); // libc keeps a little at the first time
        EXPECT_EQ(run(operation, surveys), 0);
    }
}

TEST_F(long_run, a_thousand_mode_changes_leave_their_consoles) {
    int changes = 0;
    for (const operation& operation : operations) {
        if (!is_mode(operation))
            continue;
        SCOPED_TRACE(std::string(operation.family) + " " + operation.name);
        plug_in(scene_for(operation));
        watch(operation.run);
        close_what_stays();
        int left = 0;
        for (int i = 0; i < mode_changes; i += changes_between_counts)
            left = run(operation, changes_between_counts);
        changes += mode_changes;
        std::printf("%-9s %-27s %2d consoles stay open\n", operation.family, operation.name, left);
    }
    std::printf("%d mode changes\n", changes);
    EXPECT_GE(changes, 1000);
}

} // namespace
