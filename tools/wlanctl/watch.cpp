// SPDX-License-Identifier: MIT
// Watching what becomes of a request that the library has answered with 0.

#include "watch.h"

#include "access_point_watch.h"
#include "cancelling.h"
#include "diagnostics.h"
#include "libwlan/clock.h"
#include "mediatek_watch.h"
#include "supplicant_watch.h"

sight await(watch& watch, int seconds) {
    constexpr int look_ms = 100;
    constexpr int least_for_last_words = 10;
    constexpr int second_ms = 1000;
    const int reserved = seconds >= least_for_last_words ? watch.last_words() : 0;
    const std::uint32_t started = clock_time(); // which wraps
    for (;;) {
        sight sight = watch.look();
        diagnostics::take_in();
        if (sight.now != sight::state::pending)
            return sight;
        if (asked_to_end())
            return {sight::state::lost, {reason::cancelled}};
        if (clock_time() - started >= static_cast<std::uint32_t>(seconds - reserved) * second_ms)
            return {sight::state::lost, watch.give_up()};
        pause_ms(look_ms);
    }
}

std::unique_ptr<watch> watch_join(const target& target, bool mediatek, bool address) {
    if (mediatek)
        return std::make_unique<mediatek_watch>(target, address);
    return std::make_unique<supplicant_watch>(target, address);
}

std::unique_ptr<watch> watch_access_point(const std::string& ssid, bool mediatek,
                                          bool dhcp_server) {
    return std::make_unique<access_point_watch>(ssid, mediatek, dhcp_server);
}
