#include "sim/crossing.h"

#include <cerrno>

#include "sim/clock.h"
#include "sim/journal.h"

namespace {

bool matches(const scene_fault& fault, const crossing& call) {
    const auto has = [&](const std::string& text) {
        return text.find(fault.match) != std::string::npos;
    };
    return call.call == std::string(fault.call) &&
           (has(call.subject) || has(call.request) || has(call.text));
}

/// @return the errno with which this call is to fail, or 0.
int next_fault(camera_state& state, const crossing& call) {
    int error = 0;
    for (scene_fault& fault : state.faults) {
        if (!matches(fault, call))
            continue;
        const int beyond = ++fault.seen - fault.nth;
        if (error == 0 && beyond >= 0 && (fault.times == 0 || beyond < fault.times))
            error = fault.error;
    }
    return error;
}

} // namespace

int cross(const crossing& call, const std::function<int(camera_state&)>& answer) {
    const int errno_before = errno;
    const held_camera camera;
    const std::int64_t started = camera_time(*camera);
    const int fault = next_fault(*camera, call);
    const int result = fault != 0 ? -fault : answer(*camera);
    write_journal(started, call, result);
    errno = result < 0 ? -result : errno_before;
    return result < 0 ? -1 : result;
}

bool meets_fault(const crossing& call) {
    const held_camera camera;
    const int fault = next_fault(*camera, call);
    if (fault == 0)
        return false;
    write_journal(camera_time(*camera), call, -fault);
    errno = fault;
    return true;
}
