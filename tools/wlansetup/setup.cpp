// SPDX-License-Identifier: MIT
// The set-up itself: carries out what the table of states says, and tells the page.

#include "setup.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include <poll.h>

namespace {

using nlohmann::json;
using std::chrono::seconds;

constexpr int short_patience = 30;       // seconds for what only asks
constexpr int survey_patience = 90;      // seconds
constexpr int mode_patience = 90;        // seconds, besides the wait for an outcome
constexpr int button_patience = 150;     // seconds; a router listens for two minutes
constexpr int pause_before_opening = 10; // seconds until the access point is tried again
constexpr int page_in_use = 120;         // seconds after its last request
constexpr int outcome_lasts = 300;       // seconds that a new visitor is told what went wrong
constexpr int longest_code_pause = 30;   // seconds
constexpr std::size_t most_progress = 64;

std::string text_in(const json& object, const char* field) {
    if (!object.is_object())
        return "";
    const auto found = object.find(field);
    return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

bool is_true(const json& object, const char* field) {
    const auto found = object.find(field);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

const json& part_of(const json& object, const char* field) {
    static const json none = json::object();
    const auto found = object.find(field);
    return found != object.end() && found->is_object() ? *found : none;
}

/// Whether one of the camera's stations is on a network.
bool is_associated(const json& status) {
    const auto list = status.find("interfaces");
    return list != status.end() && list->is_array() &&
           std::any_of(list->begin(), list->end(), [](const json& interface) {
               return interface.is_object() && is_true(interface, "associated");
           });
}

reply accepted() {
    return {202, {{"ok", true}}};
}

reply refused(unsigned int status, const std::string& reason, const std::string& error) {
    return {status, {{"ok", false}, {"reason", reason}, {"error", error}}};
}

} // namespace

setup::setup(setup_options options)
    : options_(std::move(options)),
      server_(
          {options_.port, options_.names, static_cast<unsigned int>(options_.slow)},
          {[this] { return tell_status(); }, [this] { return tell_state(); },
           [this](const std::string& order, const json& body) { return take_order(order, body); }}),
      radio_({[this](const json& told) { hear_event(told); },
              [this](const json& told) { hear_outcome(told); }}),
      next_tick_(wall_clock::now()), own_address_(options_.address), progress_(json::array()) {}

void setup::start() {
    linked_ = retried_ = wall_clock::now();
    enter(state::looking);
}

// What the table says
// ----------------------------------------------------------------------------------------------

void setup::on(event what) {
    if (const transition* found = find_transition(state_, what))
        enter(found->to);
}

void setup::enter(state next) {
    const bool asked = next == state::joining || next == state::pressing || next == state::changing;
    const bool routine =
        row_of(next).does == task::ask_status ||
        (row_of(state_).does == task::ask_status && row_of(next).does == task::rest);
    state_ = next;
    due_ = wall_clock::time_point::max();
    if (!routine)
        std::fprintf(stderr, "wlansetup: %s\n", row_of(next).word);
    if (asked) {
        progress_ = json::array();
        outcome_ = nullptr;
    }
    place_page();
    carry_out(row_of(next).does);
    server_.publish("state", tell_state());
}

void setup::carry_out(task what) {
    std::vector<std::string> join = {"join", "--wait", std::to_string(options_.wait)};
    if (options_.needs_address)
        join.emplace_back("--address");
    const int patience = options_.wait + mode_patience;
    const std::vector<std::string> network = {
        "--ssid-hex", to_hex(order_.ssid), "--auth", order_.how.auth, "--enc", order_.how.enc};
    const std::vector<std::string> key_file = {"--key-file", "-"};
    const auto with = [](std::vector<std::string> all, const std::vector<std::string>& more) {
        all.insert(all.end(), more.begin(), more.end());
        return all;
    };
    const auto with_network = [&](const std::vector<std::string>& command) {
        const auto all = with(command, network);
        return order_.how.needs_key() ? with(all, key_file) : all;
    };

    switch (what) {
    case task::rest: {
        const int lasts = state_ == state::waiting   ? pause_before_opening
                          : state_ == state::leaving ? options_.shown
                                                     : options_.check;
        radio_.stop();
        due_ = wall_clock::now() + seconds(lasts);
        break;
    }
    case task::ask_status:
        ask({"status"}, short_patience);
        break;
    case task::read_store:
        ask({"store", "show"}, short_patience);
        break;
    case task::join_stored:
        retried_ = wall_clock::now();
        dhcp_.start(options_.dhcp_command);
        ask(with(join, {"--stored"}), patience);
        break;
    case task::open_access_point:
        dhcp_.stop();
        ask({"ap", "start", "--stored"}, patience);
        break;
    case task::survey:
        ask({"survey"}, survey_patience);
        break;
    case task::join:
        dhcp_.start(options_.dhcp_command);
        ask(with_network(join), patience, order_.key);
        break;
    case task::press_button:
        ask({"wps"}, button_patience);
        break;
    case task::store:
        ask(with_network({"store", "set"}), short_patience, order_.key);
        break;
    case task::disconnect:
        dhcp_.stop();
        ask({"disconnect"}, short_patience);
        break;
    case task::close_access_point:
        ask({"ap", "stop"}, patience);
        break;
    }
}

void setup::ask(std::vector<std::string> arguments, int patience, const std::string& key) {
    radio_.begin(std::move(arguments), key, seconds(patience));
}

void setup::place_page() {
    const page_place place = row_of(state_).page;
    const bool at_access_point = place == page_place::access_point;
    const std::string address = at_access_point ? own_address_
                                : place == page_place::network && options_.keep_page
                                    ? text_in(joined_, "address")
                                    : "";
    if (at_access_point) {
        dns_.start(options_.dns_command);
    } else {
        dns_.stop();
    }
    if (server_.listens() && page_at_ == address)
        return;
    server_.stop();
    page_at_.clear();
    if (address.empty())
        return;
    const std::string problem = server_.listen(address, at_access_point);
    if (problem.empty()) {
        page_at_ = address;
    } else {
        std::fprintf(stderr, "wlansetup: %s\n", problem.c_str());
    }
}

// What wlanctl says
// ----------------------------------------------------------------------------------------------

bool setup::shows_progress() const {
    const task what = row_of(state_).does;
    return state_ == state::joining_obtained || what == task::join || what == task::press_button;
}

void setup::hear_event(const json& told) {
    if (!shows_progress())
        return;
    if (progress_.size() < most_progress)
        progress_.push_back(told);
    server_.publish("", told);
}

event setup::judge_status(const json& told) {
    has_cable_ = text_in(told, "wired_link") == "up";
    can_press_ = text_in(told, "family") == "mediatek";
    const auto now = wall_clock::now();
    if (has_cable_ || is_associated(told))
        linked_ = now;
    switch (state_) {
    case state::looking:
        return has_cable_ ? event::good : event::bad;
    case state::watching:
        return now - linked_ < seconds(options_.lost) ? event::good : event::bad;
    default:
        break;
    }
    if (has_cable_)
        return event::good;
    const bool unused = !server_.is_watched() && now - used_ > seconds(page_in_use);
    const bool late = now - retried_ > seconds(options_.retry);
    return has_stored_ && options_.retry > 0 && unused && late ? event::stale : event::bad;
}

event setup::judge_store(const json& told) {
    const json& client = part_of(told, "client");
    own_name_ = text_in(part_of(told, "access_point"), "ssid");
    model_ = text_in(part_of(told, "system"), "model");
    if (options_.address.empty())
        own_address_ = text_in(part_of(told, "dhcp_server"), "address");
    has_stored_ = is_true(client, "enabled") && !text_in(client, "ssid").empty();
    return has_stored_ ? event::good : event::bad;
}

void setup::hear_outcome(const json& told) {
    const bool ok = is_true(told, "ok");
    const task what = row_of(state_).does;
    event result = ok ? event::good : event::bad;
    if (shows_progress() || (what == task::store && !ok)) {
        outcome_ = told;
        told_ = wall_clock::now();
        server_.publish("", told);
    }
    switch (what) {
    case task::ask_status:
        result = judge_status(told);
        break;
    case task::read_store:
        result = judge_store(told);
        break;
    case task::survey:
        if (ok)
            networks_ = read_networks(told);
        break;
    case task::join:
    case task::join_stored:
        if (ok) {
            joined_ = told;
            linked_ = wall_clock::now();
        } else {
            order_.forget_key();
        }
        break;
    case task::store:
        has_stored_ = has_stored_ || ok;
        order_.forget_key();
        break;
    default:
        break;
    }
    if (!ok && what != task::read_store) { // a store without a network is no mistake
        std::fprintf(stderr, "wlansetup: %s: %s\n", row_of(state_).word,
                     text_in(told, "error").c_str());
    }
    on(result);
}

// What the page asks and is told
// ----------------------------------------------------------------------------------------------

reply setup::judge_code(const json& body) {
    if (options_.code.empty())
        return {0, {}};
    const auto now = wall_clock::now();
    if (now < code_open_) {
        reply wait = refused(429, "code_wait", "the code was wrong; wait before the next try");
        wait.body["seconds"] = std::chrono::duration_cast<seconds>(code_open_ - now).count() + 1;
        return wait;
    }
    if (is_code(text_in(body, "code"), options_.code)) {
        wrong_codes_ = 0;
        return {0, {}};
    }
    code_open_ = now + seconds(std::min(1 << std::min(wrong_codes_++, 10), longest_code_pause));
    return refused(403, "code", "that is not the code on the camera's label");
}

reply setup::take_join(const json& body) {
    std::string problem;
    std::optional<join_order> order = read_join(body, networks_, problem);
    if (!order)
        return refused(400, problem, "the network's name or key cannot be right");
    order_ = std::move(*order);
    on(event::join_asked);
    return accepted();
}

reply setup::take_order(const std::string& order, const json& body) {
    used_ = wall_clock::now();
    reply judged = judge_code(body);
    if (judged.status != 0)
        return judged;
    const event asked = order == "join"  ? event::join_asked
                        : order == "wps" ? event::wps_asked
                                         : event::survey_asked;
    if (asked == event::wps_asked && !can_press_)
        return refused(409, "no_wps", "this radio has no push-button set-up");
    if (find_transition(state_, asked) == nullptr)
        return refused(409, "busy", "the camera is at something else");
    if (asked == event::join_asked)
        return take_join(body);
    on(asked);
    return accepted();
}

json setup::tell_state() const {
    const auto left = std::chrono::duration_cast<seconds>(due_ - wall_clock::now()).count();
    const bool is_news = wall_clock::now() - told_ < seconds(outcome_lasts);
    return {{"state", row_of(state_).word},
            {"ssid", text_in(outcome_, "ssid").empty() ? text_in(joined_, "ssid")
                                                       : text_in(outcome_, "ssid")},
            {"closes_in", state_ == state::leaving ? json(std::max<long long>(left, 0)) : json()},
            {"outcome", is_news ? outcome_ : json()},
            {"joined", joined_},
            {"surveyed", networks_.size()}};
}

json setup::tell_status() const {
    json told = tell_state();
    told["camera"] = {{"model", model_}, {"ssid", own_name_}, {"address", own_address_}};
    told["cable"] = has_cable_;
    told["wps"] = can_press_;
    told["code_needed"] = !options_.code.empty();
    told["attempt"] = {
        {"ssid_hex", to_hex(order_.ssid)}, {"hidden", order_.hidden}, {"events", progress_}};
    told["networks"] = json::array();
    for (const network& listed : networks_) {
        const security how = security_of(listed.security_text);
        told["networks"].push_back({{"name", listed.name},
                                    {"ssid_hex", to_hex(listed.ssid)},
                                    {"bars", listed.bars},
                                    {"channel", listed.channel},
                                    {"security", listed.security_text},
                                    {"locked", how.needs_key()},
                                    {"wep", how.enc == "wep"}});
    }
    return told;
}

// The loop
// ----------------------------------------------------------------------------------------------

void setup::tick() {
    next_tick_ = wall_clock::now() + seconds(1);
    server_.tick();
    dns_.collect();
    dhcp_.collect();
    if (!server_.listens() && row_of(state_).page == page_place::access_point)
        place_page(); // its address was somebody else's
}

int setup::timeout() const {
    using std::chrono::milliseconds;
    const auto until = std::min({due_, radio_.due(), next_tick_});
    const auto left =
        std::chrono::duration_cast<milliseconds>(until - wall_clock::now()).count() + 1;
    const int own = static_cast<int>(std::clamp<long long>(left, 0, 60000));
    const int servers = server_.timeout();
    return servers < 0 ? own : std::min(own, servers);
}

void setup::turn(int also_polled) {
    pollfd sources[] = {{also_polled, POLLIN, 0},
                        {server_.descriptor(), POLLIN, 0},
                        {radio_.descriptor(), POLLIN, 0}};
    poll(sources, std::size(sources), timeout());
    server_.run();
    radio_.take();
    const auto now = wall_clock::now();
    if (now >= due_)
        on(event::due);
    if (now >= next_tick_)
        tick();
}
