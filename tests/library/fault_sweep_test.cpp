// SPDX-License-Identifier: MIT
// Every operation meets every fault, one at a time: the first, second, … call of each kind fails
// until the operation makes no further one.

#include <algorithm>
#include <cstdint>

#include "libwlan/clock.h"
#include "tests/support/camera_test.h"
#include "tests/support/operations.h"
#include "tests/support/resource_usage.h"
#include "vcamera/scene/camera.h"

namespace {

/// Calls and errnos, none of which the camera answers by itself.
constexpr std::pair<const char*, const char*> faults[] = {
    {"socket", "EMFILE"}, {"ioctl", "EIO"},    {"ioctl", "EAGAIN"},  {"ioctl", "E2BIG"},
    {"open", "EMFILE"},   {"read", "EIO"},     {"popen", "ENOMEM"},  {"system", "ENOMEM"},
    {"alloc", "ENOMEM"},  {"select", "EINTR"}, {"select", "EINVAL"}, {"kill", "EPERM"},
};

class fault_sweep : public camera_test {
protected:
    /// Runs an operation while one of its calls fails.
    /// @return whether there was such a call.
    bool survives(const operation& operation, const std::string& call, const std::string& error, int nth) {
        resource_usage gained;
        bool struck = false;
        // libc keeps a little now and then; a leak grows at every time.
        for (int tries = 0; tries == 0 || (gained.heap > 0 && tries < 5); ++tries) {
            plug_in(camera_for(operation).fault(call, error).nth(nth));
            const resource_usage before = count_resources();
            const std::uint32_t started = clock_time();
            const int result = watch(operation.run).result;
            const std::uint32_t waited = clock_time() - started;
            gained = gained_since(before);
            int quiet_commands = 0;
            for (const vcamera::line& line : vcamera::journal(folder)) {
                quiet_commands += line.subject == "/dev/console" && line.text == "w" && line.answer == "ok";
                struck = struck || line.answer == error;
            }
            close_leftovers();
            const auto& may = operation.may;
            EXPECT_NE(std::find(may.begin(), may.end(), result), may.end()) << "answered " << result;
            EXPECT_LE(waited, 1000U * static_cast<unsigned int>(operation.seconds) + 100U);
            EXPECT_LE(gained.sockets, operation.keeps + (struck ? 1 : 0));
            EXPECT_EQ(gained.consoles, quiet_commands);
            EXPECT_EQ(gained.others, 0);
        }
        EXPECT_LE(gained.heap, 0);
        return struck;
    }
};

TEST_F(fault_sweep, every_operation_survives_every_fault) {
    int survived = 0;
    for (const operation& operation : operations) {
        for (const auto& [call, error] : faults) {
            for (int nth = 1; !HasFailure(); ++nth) {
                SCOPED_TRACE(print("%s %s: %s %d %s", operation.family, operation.name, call, nth, error));
                if (!survives(operation, call, error, nth))
                    break;
                ++survived;
            }
        }
    }
    std::printf("%d faults survived\n", survived);
    EXPECT_GT(survived, 500);
}

} // namespace
