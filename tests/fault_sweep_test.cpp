// Every operation meets every fault, one at a time: the first, second, … call of each kind fails
// until the operation makes no further one.

#include <algorithm>

#include "libwlan/clock.h"
#include "sim/camera.h"
#include "tests/camera_test.h"
#include "tests/holdings.h"
#include "tests/operations.h"

namespace {

/// The errnos are none that the camera answers by itself.
struct kind_of_call {
    const char* name;
    std::vector<const char*> errnos;
};

const std::vector<kind_of_call> kinds = {
    {"socket", {"EMFILE"}},       {"ioctl", {"EIO", "EAGAIN", "E2BIG"}},
    {"open", {"EMFILE"}},         {"read", {"EIO"}},
    {"popen", {"ENOMEM"}},        {"system", {"ENOMEM"}},
    {"alloc", {"ENOMEM"}},        {"select", {"EINTR", "EINVAL"}},
    {"kill", {"EPERM"}},
};

struct course {
    int result;
    std::uint32_t waited;
    int sockets;
    int consoles;
    int others;
    long heap; // beyond that of the consoles
    int quiet_commands;
    bool struck;
};

class fault_sweep : public camera_test {
protected:
    course run(const operation& operation, const std::string& fault, const std::string& error) {
        plug_in(scene_for(operation, "[" + fault + "]"));
        const holdings before = count_holdings();
        const std::uint32_t started = clock_time();
        const int result = watch(operation.run).result;
        course course{result, clock_time() - started, 0, 0, 0, 0, 0, false};
        const holdings after = count_holdings();
        course.sockets = after.sockets - before.sockets;
        course.consoles = after.consoles - before.consoles;
        course.others = after.others - before.others;
        course.heap = static_cast<long>(after.heap) - static_cast<long>(before.heap) -
                      course.consoles * static_cast<long>(heap_of_a_stream());
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
        if (course.heap > 0) // libc may keep a little at the first time, a leak grows at every time
            course = run(operation, fault, error);
        const auto& may = operation.may;
        EXPECT_NE(std::find(may.begin(), may.end(), course.result), may.end()) << "answered " << course.result;
        EXPECT_LE(course.waited, 1000U * static_cast<unsigned int>(operation.seconds) + 100U);
        EXPECT_LE(course.sockets, operation.keeps + (course.struck ? 1 : 0));
        EXPECT_EQ(course.consoles, course.quiet_commands);
        EXPECT_EQ(course.others, 0);
        EXPECT_LE(course.heap, 0);
        return course.struck;
    }
};

TEST_F(fault_sweep, every_operation_survives_every_fault) {
    int survived = 0;
    for (const operation& operation : operations)
        for (const kind_of_call& kind : kinds)
            for (const char* error : kind.errnos)
                for (int nth = 1; !HasFailure(); ++nth) {
                    SCOPED_TRACE(std::string(operation.family) + " " + operation.name + ": " + kind.name + " " +
                                 std::to_string(nth) + " " + error);
                    if (!survives(operation, kind.name, error, nth))
                        break;
                    ++survived;
                }
    std::printf("%d faults survived\n", survived);
    EXPECT_GT(survived, 500);
}

} // namespace
