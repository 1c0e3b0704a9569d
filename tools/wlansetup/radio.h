// SPDX-License-Identifier: MIT
// One wlanctl request at a time.

#pragma once

#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>
#include <wlanrequest.h>

using wall_clock = std::chrono::steady_clock;

class radio {
public:
    struct listener {
        std::function<void(const nlohmann::json&)> event;   ///< all but the last
        std::function<void(const nlohmann::json&)> outcome; ///< the last
    };

    explicit radio(listener hearing) : listener_(std::move(hearing)) {}

    /// Begins a request. One that runs is cancelled, and nothing more is heard of it.
    void begin(std::vector<std::string> arguments, const std::string& key,
               std::chrono::seconds patience);

    /// Cancels what runs; nothing more is heard of it.
    void stop();

    /// To be polled for reading; -1 when nothing runs.
    [[nodiscard]] int descriptor() const;

    /// When to call take() at the latest.
    [[nodiscard]] wall_clock::time_point due() const;

    /// Hears what there is to hear.
    void take();

private:
    struct freed {
        void operator()(wlan_request* request) const { wlan_request_free(request); }
    };
    struct order {
        std::vector<std::string> arguments;
        std::string key;
        std::chrono::seconds patience{};

        order(std::vector<std::string> with, std::string secret, std::chrono::seconds lasting)
            : arguments(std::move(with)), key(std::move(secret)), patience(lasting) {}
        order(const order&) = delete;
        order& operator=(const order&) = delete;
        ~order() { explicit_bzero(key.data(), key.size()); }
    };

    void start(const order& next);
    void finish();
    void hear(const char* line);

    listener listener_;
    std::unique_ptr<wlan_request, freed> running_;
    std::unique_ptr<order> next_;
    nlohmann::json outcome_; ///< null until it was heard
    wall_clock::time_point due_ = wall_clock::time_point::max();
    bool unheard_ = false; ///< what runs was cancelled
    bool overdue_ = false;
};
