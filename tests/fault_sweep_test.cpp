// Every operation meets every fault, one at a time: the first, second, … call of each kind fails
// until the operation makes no further one.

#include <algorithm>

#include "libwlan/clock.h"
#include "sim/camera.h"
#include "tests/camera_test.h"
#include "tests/holdings.h"
#include "tests/operations.h"

namespace {

/// Calls and errnos, none of which the camera answers by itself.
constexpr std::pair<const char*, const char*> faults[] = {
    {"socket", "EMFILE"}, {"ioctl", "EIO"},    {"ioctl", "EAGAIN"},  {"ioctl", "E2BIG"},
    {"open", "EMFILE"},   {"read", "EIO"},     {"popen", "ENOMEM"},  {"system", "ENOMEM"},
    {"alloc", "ENOMEM"},  {"select", "EINTR"}, {"select", "EINVAL"}, {"kill", "EPERM"},
};

struct course {
    int result;
    std::uint32_t waited;
    holdings gained;
    int quiet_commands = 0;
    bool struck = false;
};

class fault_sweep : public camera_test {
protected:
    course run(const operation& operation, const std::string& fault, const std::string& error) {
        plug_in(scene_for(operation, "[" + fault + "]"));
        const holdings before = count_holdings();
        const std::uint32_t started = clock_time();
        const int result = watch(operation.run).result;
        course course{result, clock_time() - started, gained_since(before)};
        for (const vcamera::line& line : vcamera::journal(folder)) {
            course.quiet_commands += line.subject == "/dev/console" && line.text == "w" && line.answer == "ok";
            course.struck = course.struck || line.answer == error;
        }
        close_what_stays();
        return course;
    }

    /// Runs an operation while one of its calls fails.
    /// @return whether there was such a call.
    bool survives(const operation& operation, const std::string& call, const std::string& error, int nth) {
        const std::string fault =
            R"({"call": ")" + call + R"(", "errno": ")" + error + R"(", "nth": )" + std::to_string(nth) + "}";
        course course = run(operation, fault, error);
        // libc keeps a little now and then; a leak grows at every time.
        for (int tries = 1; course.gained.heap > 0 && tries < 5; ++tries)
            course = run(operation, fault, error);
        const auto& may = operation.may;
        EXPECT_NE(std::find(may.begin(), may.end(), course.result), may.end()) << "answered " << course.result;
        EXPECT_LE(course.waited, 1000U * static_cast<unsigned int>(operation.seconds) + 100U);
        EXPECT_LE(course.gained.sockets, operation.keeps + (course.struck ? 1 : 0));
        EXPECT_EQ(course.gained.consoles, course.quiet_commands);
        EXPECT_EQ(course.gained.others, 0);
        EXPECT_LE(course.gained.heap, 0);
        return course.struck;
    }
};

TEST_F(fault_sweep, every_operation_survives_every_fault) {
    int survived = 0;
    for (const operation& operation : operations)
        for (const auto& [call, error] : faults)
            for (int nth = 1; !HasFailure(); ++nth) {
                SCOPED_TRACE(print("%s %s: %s %d %s", operation.family, operation.name, call, nth, error));
                if (!survives(operation, call, error, nth))
                    break;
                ++survived;
            }
    std::printf("%d faults survived\n", survived);
    EXPECT_GT(survived, 500);
}

} // namespace
