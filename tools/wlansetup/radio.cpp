// SPDX-License-Identifier: MIT
// One wlanctl request at a time.

#include "radio.h"

#include <cerrno>
#include <cstring>

namespace {

using nlohmann::json;

constexpr std::chrono::seconds time_to_cancel{3};

json failed(const char* reason, const std::string& error) {
    return {{"event", "outcome"}, {"ok", false}, {"reason", reason}, {"error", error}};
}

} // namespace

void radio::begin(std::vector<std::string> arguments, const std::string& key,
                  std::chrono::seconds patience) {
    stop();
    next_ = std::make_unique<order>(std::move(arguments), key, patience);
    if (running_ == nullptr)
        start(*std::exchange(next_, nullptr));
}

void radio::stop() {
    next_.reset();
    if (running_ == nullptr) {
        due_ = wall_clock::time_point::max();
        outcome_ = nullptr;
        return;
    }
    if (!unheard_) {
        wlan_request_cancel(running_.get());
        due_ = wall_clock::now() + time_to_cancel;
    }
    unheard_ = overdue_ = true;
}

int radio::descriptor() const {
    return running_ == nullptr ? -1 : wlan_request_fd(running_.get());
}

wall_clock::time_point radio::due() const {
    return due_;
}

void radio::start(const order& next) {
    std::vector<const char*> arguments;
    for (const std::string& argument : next.arguments)
        arguments.push_back(argument.c_str());
    arguments.push_back(nullptr);
    outcome_ = nullptr;
    unheard_ = overdue_ = false;
    running_.reset(
        wlan_request_start(arguments.data(), next.key.empty() ? nullptr : next.key.c_str()));
    due_ = wall_clock::now() + next.patience;
    if (running_ == nullptr) {
        outcome_ = failed("program_missing", std::string("wlanctl: ") + std::strerror(errno));
        due_ = wall_clock::now(); // told by take(), not to a caller in the midst of begin()
    }
}

void radio::hear(const char* line) {
    json told = json::parse(line, nullptr, false);
    if (unheard_ || !told.is_object() || !told.contains("event"))
        return;
    if (told["event"] == "outcome") {
        outcome_ = std::move(told);
    } else {
        listener_.event(told);
    }
}

void radio::take() {
    if (running_ == nullptr) {
        if (!outcome_.is_null())
            finish();
        return;
    }
    const char* line = nullptr;
    int result = 0;
    while ((result = wlan_request_next(running_.get(), &line)) == 1)
        hear(line);
    if (result < 0) {
        finish();
    } else if (wall_clock::now() >= due_) {
        if (overdue_) {
            outcome_ = failed("timed_out", "wlanctl does not answer");
            finish();
        } else {
            wlan_request_cancel(running_.get());
            overdue_ = true;
            due_ = wall_clock::now() + time_to_cancel;
        }
    }
}

void radio::finish() {
    running_.reset();
    due_ = wall_clock::time_point::max();
    const json outcome = outcome_.is_null()
                             ? failed("driver_refused", "wlanctl ended without an outcome")
                             : std::exchange(outcome_, nullptr);
    outcome_ = nullptr;
    const bool unheard = std::exchange(unheard_, false);
    if (next_ != nullptr) {
        start(*std::exchange(next_, nullptr));
    } else if (!unheard) {
        listener_.outcome(outcome);
    }
}
