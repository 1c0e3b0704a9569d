// SPDX-License-Identifier: MIT
// Watching a Realtek adapter join, by what its wpa_supplicant tells.

#include "supplicant_watch.h"

#include <cstdlib>
#include <cstring>
#include <sstream>

#include "daemons.h"
#include "diagnostics.h"
#include "link_watch.h"
#include "progress.h"

namespace {

constexpr char station[] = "wlan0";

constexpr int looks_between = 10;       // questions for its state
constexpr int looks_without_state = 60; // that a link has to last: a failing handshake takes 4 s
constexpr int scans_that_miss = 2;      // one scan may miss a network that is there
constexpr int enough_rejections = 2;    // a busy access point refuses once

bool begins(const std::string& text, const char* part) {
    return text.compare(0, std::strlen(part), part) == 0;
}

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

int number_after(const std::string& text, const char* name) {
    const std::size_t place = text.find(name);
    return place == std::string::npos ? 0
                                      : static_cast<int>(std::strtol(
                                            text.c_str() + place + std::strlen(name), nullptr, 10));
}

void tell_attempt(reason why) {
    tell_progress("attempt_failed", {{"reason", word_of(why)}});
}

} // namespace

void supplicant_watch::take_event(const std::string& text) {
    if (begins(text, "CTRL-EVENT-NETWORK-NOT-FOUND")) {
        ++not_found_;
    } else if (contains(text, "4-Way Handshake failed")) {
        ++wrong_keys_;
        tell_attempt(reason::wrong_key);
    } else if (begins(text, "CTRL-EVENT-SSID-TEMP-DISABLED")) {
        disabled_ = true;
        wrong_keys_ += contains(text, "reason=WRONG_KEY") ? 1 : 0;
    } else if (begins(text, "CTRL-EVENT-ASSOC-REJECT") || begins(text, "CTRL-EVENT-AUTH-REJECT")) {
        ++rejections_;
        status_code_ = number_after(text, "status_code=");
        tell_attempt(reason::refused);
    } else if (begins(text, "CTRL-EVENT-CONNECTED")) {
        state_ = "COMPLETED";
    } else if (begins(text, "CTRL-EVENT-DISCONNECTED")) {
        state_ = "DISCONNECTED";
    } else if (begins(text, "CTRL-EVENT-TERMINATING")) {
        ended_ = true;
    }
}

void supplicant_watch::listen() {
    if (looks_ % looks_between == 0)
        ended_ = ended_ || !is_running(supplicant_daemon);
    if (control_.open() && looks_ % looks_between == 0)
        control_.ask("STATUS");
    ++looks_;
    control_.take_in([this](const control_socket::message& message) {
        if (message.what == control_socket::kind::event) {
            take_event(message.text);
        } else if (message.command == "STATUS") {
            state_ = value_in(message.text, "wpa_state");
        }
    });
}

// NOLINTNEXTLINE(readability-function-cognitive-complexity): questions in a row, none in another
sight supplicant_watch::look() {
    listen();
    if (ended_)
        return lost({reason::daemon_refused, true, "wpa_supplicant has ended"});
    if (state_ != "COMPLETED" && wrong_keys_ > 0 && disabled_)
        return lost({reason::wrong_key});
    if (state_ != "COMPLETED" && rejections_ > 0 && (disabled_ || rejections_ >= enough_rejections))
        return lost(give_up());
    if (not_found_ >= scans_that_miss)
        return lost(give_up());
    const sight sight = look_at_link(station, target_, address_, linked_);
    linked_looks_ = linked_ ? linked_looks_ + 1 : 0;
    // The kernel's link alone comes before the keys: without the daemon's word it has to last.
    const bool keyed = state_ == "COMPLETED" || !target_.is_protected ||
                       (state_.empty() && linked_looks_ >= looks_without_state);
    return sight.now == sight::state::reached && !keyed ? ::sight{} : sight;
}

setback supplicant_watch::give_up() {
    if (linked_ && state_ == "COMPLETED")
        return {reason::no_address};
    if (wrong_keys_ > 0)
        return {reason::wrong_key, disabled_};
    if (rejections_ > 0) {
        return {reason::refused,
                true,
                "the access point refused the camera (status " + std::to_string(status_code_) + ")",
                {{"status_code", status_code_}}};
    }
    if (not_found_ > 0 && (target_.was_heard || daemon_hears())) {
        return {reason::refused, false,
                "the network is heard, but its security is probably another one"};
    }
    if (not_found_ > 0)
        return {reason::not_heard};
    if (linked_ || begins(state_, "4WAY_HANDSHAKE"))
        return {reason::wrong_key, false};
    return state_.empty() ? likely() : setback{reason::timed_out};
}

/// Without the daemon's word: what is mostly so.
setback supplicant_watch::likely() const {
    if (!target_.was_heard)
        return {reason::not_heard, false};
    return {target_.is_protected ? reason::wrong_key : reason::refused, false};
}

/// Its list has a network a line, with the name behind the last tab.
bool supplicant_watch::daemon_hears() {
    std::istringstream list(control_.reply_to("SCAN_RESULTS"));
    for (std::string line; std::getline(list, line);) {
        const std::size_t tab = line.rfind('\t');
        if (tab != std::string::npos && plain_name(line.substr(tab + 1)) == target_.ssid)
            return true;
    }
    return false;
}

sight supplicant_watch::lost(const setback& why) const {
    return {sight::state::lost, why};
}
