// SPDX-License-Identifier: MIT
// The set-up itself: carries out what the table of states says, and tells the page.

#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "input.h"
#include "program.h"
#include "radio.h"
#include "server.h"
#include "states.h"

struct setup_options {
    std::string address;       ///< of the access point; empty: the stored one
    std::string code;          ///< that the page asks for; empty: none
    std::string dns_command;   ///< runs while the access point is up
    std::string dhcp_command;  ///< runs while a network is joined
    int wait = 30;             ///< seconds that joining may take
    int retry = 300;           ///< seconds between tries of the stored network
    int check = 10;            ///< seconds between looks at the links
    int lost = 60;             ///< seconds without a link after which the network is gone
    int shown = 20;            ///< seconds that the access point outlives success
    bool needs_address = true; ///< a network counts as joined once it gave an address
    bool keep_page = false;
    std::vector<std::string> names; ///< that lead to the page besides its address, in lower case
    int port = 80;
    int slow = 30; ///< seconds that a browser may take for a request
};

class setup {
public:
    explicit setup(setup_options options);

    void start();

    /// Waits for what comes next, and deals with it.
    /// @param also_polled ends the wait when it can be read.
    void turn(int also_polled);

private:
    // What the table says
    void on(event what);
    void enter(state next);
    void carry_out(task what);
    void ask(std::vector<std::string> arguments, int patience, const std::string& key = "");
    void place_page();

    // What wlanctl says
    void hear_event(const nlohmann::json& told);
    void hear_outcome(const nlohmann::json& told);
    [[nodiscard]] event judge_status(const nlohmann::json& told);
    [[nodiscard]] event judge_store(const nlohmann::json& told);

    // What the page asks and is told
    reply take_order(const std::string& order, const nlohmann::json& body);
    reply take_join(const nlohmann::json& body);
    [[nodiscard]] reply judge_code(const nlohmann::json& body);
    [[nodiscard]] nlohmann::json tell_state() const;
    [[nodiscard]] nlohmann::json tell_status() const;
    [[nodiscard]] bool shows_progress() const;

    void tick();
    [[nodiscard]] int timeout() const;

    setup_options options_;
    server server_;
    radio radio_;
    program dns_;
    program dhcp_;

    state state_ = state::looking;
    wall_clock::time_point due_ = wall_clock::time_point::max();
    wall_clock::time_point next_tick_;
    wall_clock::time_point used_;      ///< the page, last
    wall_clock::time_point retried_;   ///< the stored network, last
    wall_clock::time_point told_;      ///< the outcome
    wall_clock::time_point linked_;    ///< seen, last
    wall_clock::time_point code_open_; ///< until then no code is looked at
    int wrong_codes_ = 0;
    bool has_stored_ = false;
    bool has_cable_ = false;
    bool can_press_ = false;
    std::string own_address_; ///< of the access point
    std::string model_;
    std::string own_name_; ///< of the access point
    std::string page_at_;  ///< where the server listens

    std::vector<network> networks_;
    join_order order_;        ///< under way
    nlohmann::json progress_; ///< events of what the page asked for
    nlohmann::json outcome_;  ///< of that; null until there is one
    nlohmann::json joined_;   ///< outcome of the network that the camera is on, or null
};
