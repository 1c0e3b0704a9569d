// SPDX-License-Identifier: MIT
// The stations of the camera's access point.

#include "vcamera/model/visitors.h"

#include <algorithm>
#include <iterator>

#include "vcamera/model/camera_state.h"
#include "vcamera/model/clock.h"
#include "vcamera/model/control_sockets.h"
#include "vcamera/model/texts.h"

void expect_visitors(camera_state& state) {
    for (int i = 0; i < state.visitors_expected; ++i) {
        visitor& visitor = state.visitors[i];
        visitor.comes_at = std::max<std::int64_t>(camera_time(state) + visitor.after, 1);
    }
}

void dismiss_visitors(camera_state& state) {
    for (visitor& visitor : state.visitors) {
        visitor.comes_at = 0;
        visitor.is_there = 0;
    }
}

std::int64_t visitors_due(const camera_state& state) {
    std::int64_t due = 0;
    for (const visitor& visitor : state.visitors) {
        if (visitor.comes_at != 0 && visitor.is_there == 0 && (due == 0 || visitor.comes_at < due))
            due = visitor.comes_at;
    }
    return due;
}

void advance_visitors(camera_state& state, std::int64_t now) {
    for (visitor& visitor : state.visitors) {
        if (visitor.comes_at == 0 || visitor.is_there != 0 || now < visitor.comes_at)
            continue;
        visitor.is_there = 1;
        const std::string address = address_text(visitor.address);
        tell_clients(state, "hostapd", REALTEK_AP, "AP-STA-CONNECTED " + address);
        if (state.hosted.wpa != 0)
            tell_clients(state, "hostapd", REALTEK_AP, "EAPOL-4WAY-HS-COMPLETED " + address);
    }
}

int count_visitors(const camera_state& state) {
    return static_cast<int>(
        std::count_if(std::begin(state.visitors), std::end(state.visitors),
                      [](const visitor& visitor) { return visitor.is_there != 0; }));
}

const visitor* next_visitor(const camera_state& state, const visitor* previous) {
    const visitor* from = previous == nullptr ? std::begin(state.visitors) : previous + 1;
    const visitor* found = std::find_if(from, std::end(state.visitors), [](const visitor& visitor) {
        return visitor.is_there != 0;
    });
    return found == std::end(state.visitors) ? nullptr : found;
}

const visitor* find_visitor(const camera_state& state, const std::string& address) {
    for (const visitor* visitor = next_visitor(state, nullptr); visitor != nullptr;
         visitor = next_visitor(state, visitor)) {
        if (address_text(visitor->address) == address)
            return visitor;
    }
    return nullptr;
}

int seconds_of_visit(const camera_state& state, const visitor& visitor) {
    return static_cast<int>((camera_time(state) - visitor.comes_at) / 1000000);
}
