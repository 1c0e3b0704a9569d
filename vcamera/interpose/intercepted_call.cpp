// SPDX-License-Identifier: MIT
// What happens to every intercepted call.

#include "vcamera/interpose/intercepted_call.h"

#include <cerrno>
#include <cstdint>

#include "vcamera/interpose/journal.h"
#include "vcamera/model/clock.h"
#include "vcamera/model/daemons.h"

namespace {

bool matches(const scene_fault& fault, const intercepted_call& call) {
    const auto has = [&](const std::string& text) {
        return text.find(fault.match) != std::string::npos;
    };
    return call.call == std::string(fault.call) &&
           (has(call.subject) || has(call.request) || has(call.text));
}

/// @return the errno with which this call is to fail, or 0.
int fault_for(camera_state& state, const intercepted_call& call) {
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

int intercept(const intercepted_call& call, const std::function<int(camera_state&)>& answer) {
    const int errno_before = errno;
    const locked_camera camera;
    advance_daemons(*camera);
    const std::int64_t started = camera_time(*camera);
    const int fault = fault_for(*camera, call);
    const int result = fault != 0 ? -fault : answer(*camera);
    advance_daemons(*camera); // a wait has moved the clock
    write_journal(started, call, result);
    errno = result < 0 ? -result : errno_before;
    return result < 0 ? -1 : result;
}

bool injects_fault(const intercepted_call& call) {
    const locked_camera camera;
    const int fault = fault_for(*camera, call);
    if (fault == 0)
        return false;
    write_journal(camera_time(*camera), call, -fault);
    errno = fault;
    return true;
}
