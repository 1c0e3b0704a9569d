// SPDX-License-Identifier: MIT
// Requests that set the radio up, and what comes of them.

#include "mode_request.h"

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>
#include <sys/stat.h>

#include "cancelling.h"
#include "diagnostics.h"
#include "libwlan/access_point.h"
#include "libwlan/store.h"
#include "libwlan/wlan.h"
#include "progress.h"
#include "stored_network.h"
#include "worker.h"

namespace {

/// @return the last lines that the library, the driver's tools and the daemons printed.
answer last_lines() {
    constexpr std::size_t most = 8;
    std::vector<answer> lines;
    std::istringstream text(diagnostics::printed());
    for (std::string line; std::getline(text, line);) {
        if (!line.empty())
            lines.emplace_back(line);
    }
    if (lines.size() > most)
        lines.erase(lines.begin(), lines.end() - most);
    return answer::list(lines);
}

void add_all(answer& told, const answer& more) {
    for (const auto& [name, value] : more.fields())
        told.set(name, value);
}

class mode_run {
public:
    mode_run(const mode_request& request, const adapter& found, const request_options& options)
        : request_(request), found_(found), options_(options) {}

    answer carry_out() {
        set_up();
        const std::string missing = missing_daemon(request_.daemons, found_.mediatek);
        if (asked_to_end())
            throw undone();
        if (!missing.empty())
            throw because(daemon_missing(missing), request_.what);
        if (options_.wait == 0) {
            return {{"outcome", "configured"},
                    {"done", request_.what + ": configured"},
                    {"next", "see how it is doing with: wlanctl status"}};
        }
        return outcome();
    }

private:
    /// The shell, whichever it is, tells of a program that is not there.
    static setback daemon_missing(const std::string& name) {
        const std::string& printed = diagnostics::printed();
        if (printed.find(name + ": not found") != std::string::npos ||
            printed.find(name + ": command not found") != std::string::npos)
            return {reason::program_missing, true, "the camera has no program " + name};
        return {reason::daemon_refused,
                true,
                name + " does not run; its lines tell why",
                {{"lines", last_lines()}}};
    }

    void set_up() {
        tell_progress("configuring");
        umask(S_IRWXG | S_IRWXO); // the daemons' files hold the key
        diagnostics::forget();
        const work_done done = run_in_child([this](int /*results*/) { return request_.run(); });
        if (asked_to_end())
            throw undone();
        if (!done.finished || done.result != 0)
            throw because(not_set_up(), request_.what);
    }

    setback not_set_up() const {
        _system_setting system{};
        if (!found_.mediatek && cam_get_system(&system) != 0)
            return {reason::store_failed, true, {}, {{"lines", last_lines()}}};
        return {reason::driver_refused, true, {}, {{"lines", last_lines()}}};
    }

    void undo() const {
        if (request_.joins)
            stop_station(found_);
        if (request_.opens)
            stop_access_point(found_);
    }

    failure undone() const {
        undo();
        return because({reason::cancelled}, request_.what);
    }

    /// From when the radio was set up: what the library waits for before is its own.
    int seconds_left() const {
        constexpr unsigned int second_ms = 1000;
        const auto waited = static_cast<int>((clock_time() - set_up_at_) / second_ms);
        return std::max(options_.wait - waited, 1);
    }

    answer outcome() {
        set_up_at_ = clock_time();
        answer told = {{"outcome", outcome_word()}, {"done", done_sentence()}};
        answer access_point;
        if (request_.opens) {
            access_point = reach(
                *watch_access_point(request_.access_point, found_.mediatek, request_.dhcp_server));
        }
        if (request_.joins) {
            tell_progress("associating", {{"ssid", request_.network.ssid}});
            add_all(told, reach(*watch_join(request_.network, found_.mediatek, options_.address)));
        } else {
            add_all(told, access_point);
        }
        told.set("seconds", options_.seconds());
        if (request_.joins && request_.opens)
            told.set("access_point", access_point);
        return told;
    }

    const char* outcome_word() const {
        return !request_.joins ? "access_point_up" : request_.opens ? "repeating" : "joined";
    }

    std::string done_sentence() const {
        return request_.joins ? "joined \"" + request_.network.ssid + "\""
                              : "access point \"" + request_.access_point + "\" is up";
    }

    answer reach(watch& watch) {
        const sight sight = await(watch, seconds_left());
        if (sight.now == sight::state::reached)
            return sight.found;
        if (sight.why.why == reason::cancelled)
            throw undone();
        throw because(with_lines(sight.why), request_.what);
    }

    static setback with_lines(setback why) {
        if (why.why == reason::daemon_refused)
            why.found.set("lines", last_lines());
        return why;
    }

    const mode_request& request_;
    const adapter& found_;
    const request_options& options_;
    std::uint32_t set_up_at_ = clock_time();
};

/// What came of the stored access point, as its own request would tell it.
answer fall_back(const adapter& found, const request_options& options) {
    try {
        request_options plain = options;
        plain.wait = std::max(options.wait, 1);
        plain.or_ap = false;
        answer told = {{"ok", true}};
        add_all(told, mode_run(stored_access_point(), found, plain).carry_out());
        return told;
    } catch (const failure& second) {
        answer told = {{"ok", false},
                       {"reason", second.reason},
                       {"certain", second.certain},
                       {"error", second.what()},
                       {"next", second.next}};
        add_all(told, second.found);
        return told;
    }
}

bool was_cancelled(const failure& failure) {
    return failure.reason == word_of(reason::cancelled);
}

} // namespace

int request_options::seconds() const {
    constexpr unsigned int second_ms = 1000;
    return static_cast<int>((clock_time() - began) / second_ms);
}

void add_lock_option(CLI::App& command, request_options& options) {
    constexpr int longest = 3600;
    command.add_option("--lock-wait", options.lock_wait, "How long to wait for another request")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, longest, "0-3600"))
        ->capture_default_str();
}

void add_request_options(CLI::App& command, request_options& options) {
    constexpr int longest = 3600;
    command.add_option("--wait", options.wait, "How long to wait for the outcome; 0 does not wait")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, longest, "0-3600"))
        ->capture_default_str();
    add_lock_option(command, options);
}

answer carry_out(const mode_request& request, const adapter& found,
                 const request_options& options) {
    try {
        return mode_run(request, found, options).carry_out();
    } catch (failure& first) {
        if (!options.or_ap || was_cancelled(first))
            throw;
        tell_progress("fallback", {{"reason", first.reason}});
        stop_station(found);
        first.found.set("fallback", fall_back(found, options));
        if (asked_to_end())
            throw because({reason::cancelled}, request.what);
        throw;
    }
}

void stop_station(const adapter& found) {
    if (!found.mediatek) {
        stop_daemon(supplicant_daemon);
        return;
    }
    wlan radio;
    if (radio.init() != 0)
        return;
    char prefix[] = "ApCli";
    for (const wifi_interface& interface : found.interfaces) {
        if (!interface.station || interface.state == "absent")
            continue;
        std::string name = interface.name;
        radio.set_interface(name.data());
        radio.set_prefix(prefix);
        radio.enable_apcli(false);
    }
    radio.release();
}

void stop_access_point(const adapter& found) {
    stop_daemon(dhcp_daemon);
    if (!found.mediatek)
        stop_daemon(hostapd_daemon);
    run_stop_ap_mode(); // with nothing left to wait for
}
