// SPDX-License-Identifier: MIT
// The page, its requests and its events by HTTP, for those who may.

#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

struct MHD_Daemon;

/// An answer to one of the page's requests.
struct reply {
    unsigned int status = 200;
    nlohmann::json body;
};

struct server_options {
    int port = 80;
    std::vector<std::string> names; ///< besides its address, in lower case
    unsigned int slow_seconds = 30; ///< that a client may take for a request
};

/// Runs in the caller's event loop.
class server {
public:
    struct handlers {
        std::function<nlohmann::json()> status;
        std::function<nlohmann::json()> state;
        std::function<reply(const std::string& order, const nlohmann::json& body)> order;
    };

    server(server_options options, handlers answers);
    ~server();
    server(const server&) = delete;
    server& operator=(const server&) = delete;

    /// Listens on this address alone.
    /// @param captive whether every name leads here, so that other hosts are answered with the
    ///     way to the page.
    /// @return what went wrong, or "".
    std::string listen(const std::string& address, bool captive);
    void stop();
    [[nodiscard]] bool listens() const { return daemon_ != nullptr; }

    /// To be polled for reading; -1 while it does not listen.
    [[nodiscard]] int descriptor() const;

    /// @return milliseconds until run() is due; -1: not before there is something to read.
    [[nodiscard]] int timeout() const;
    void run();

    /// Sends an event to every page that listens to them.
    void publish(const std::string& name, const nlohmann::json& data);

    /// Whether a page is open somewhere.
    [[nodiscard]] bool is_watched() const;

    /// What happens once a second: ends slow connections, finds dead ones.
    void tick();

    struct implementation;

private:
    std::unique_ptr<implementation> impl_;
    MHD_Daemon* daemon_ = nullptr;
};
