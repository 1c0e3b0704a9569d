// SPDX-License-Identifier: MIT
// wlanctl watch.

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "adapter.h"
#include "cancelling.h"
#include "commands.h"
#include "diagnostics.h"
#include "display.h"
#include "libwlan/clock.h"
#include "live_view.h"
#include "progress.h"
#include "reasons.h"
#include "whereabouts.h"

namespace {

struct watch_options {
    int interval = 2; ///< seconds
    int count = 0;    ///< 0: until a signal ends it
};

constexpr unsigned int second_ms = 1000;

/// @return false when nobody reads any more.
bool write_text(const std::string& text) {
    FILE* const answers = diagnostics::answers();
    return answers != nullptr && std::fputs(text.c_str(), answers) >= 0 &&
           std::fflush(answers) == 0;
}

/// Shows one state after the other.
class view {
public:
    view() = default;
    virtual ~view() = default;
    view(const view&) = delete;
    view& operator=(const view&) = delete;

    /// @return false when nobody looks any more.
    virtual bool show(const live_state& state) = 0;
};

class plain_view : public view {
public:
    bool show(const live_state& state) override { return write_text(line_of(state) + "\n"); }
};

class json_view : public view {
public:
    bool show(const live_state& state) override {
        answer fields = {{"seconds", state.seconds},
                         {"station", state.station},
                         {"access_point", state.access_point}};
        if (!state.problem.empty())
            fields.set("problem", state.problem);
        return tell_progress("state", fields);
    }
};

/// Draws each state over the one before. Lines are not wrapped, so that it stays known how many
/// there are.
class terminal_view : public view {
public:
    terminal_view() { write_text("\033[?25l\033[?7l"); } // hide the cursor, do not wrap
    ~terminal_view() override { write_text("\033[?7h\033[?25h"); }

    bool show(const live_state& state) override {
        history_.add(state.station.is_null() ? -1 : signal_share(state.station));
        const std::vector<std::string> lines = draw_state(state, history_, answer_display());
        std::string text = drawn_ == 0 ? "" : "\033[" + std::to_string(drawn_) + "A";
        for (const std::string& line : lines)
            text += "\r" + line + "\033[K\n";
        drawn_ = lines.size();
        return write_text(text + "\033[J");
    }

private:
    signal_history history_;
    std::size_t drawn_ = 0; ///< lines
};

std::unique_ptr<view> choose_view(bool json) {
    if (json) {
        show_progress(progress_form::json);
        return std::make_unique<json_view>();
    }
    if (answer_display().moves)
        return std::make_unique<terminal_view>();
    return std::make_unique<plain_view>();
}

live_state look(adapter& found, std::uint32_t started) {
    live_state state;
    state.seconds = static_cast<int>((clock_time() - started) / second_ms);
    refresh(found);
    if (is_usable(found)) {
        state.station = station_of(found);
        state.access_point = access_point_of(found);
    } else {
        state.problem = "the adapter's interfaces are gone";
    }
    diagnostics::take_in();
    diagnostics::forget();
    return state;
}

/// In pieces: a signal that comes just before a pause does not cut that one short.
void pause_until(std::uint32_t moment) {
    constexpr int piece_ms = 500;
    while (!asked_to_end()) {
        const auto left = static_cast<std::int32_t>(moment - clock_time()); // which wraps
        if (left <= 0)
            return;
        pause_ms(std::min<int>(left, piece_ms));
    }
}

answer watch(const watch_options& options, bool json) {
    adapter found = find_adapter();
    take_ending_signals();
    const std::unique_ptr<view> view = choose_view(json);
    const std::uint32_t started = clock_time();
    std::uint32_t next = started;
    int looks = 0;
    bool is_read = true;
    while (is_read && !asked_to_end()) {
        is_read = view->show(look(found, started));
        if (++looks == options.count)
            break;
        next += static_cast<std::uint32_t>(options.interval) * second_ms;
        pause_until(next);
    }
    answer told = {{"outcome", "done"}, {"looks", looks}};
    told.draw("");
    return told;
}

} // namespace

void add_watch_command(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<watch_options>();
    auto& command =
        *wlanctl.add_subcommand("watch", "Show link, signal and stations as they change");
    command.add_option("--interval", options->interval, "Seconds from one look to the next")
        ->check(CLI::Range(1, 3600, "1-3600"))
        ->capture_default_str();
    command.add_option("--count", options->count, "So many looks; without it until Ctrl-C")
        ->check(CLI::Range(1, 1000000000, "N"));
    command.footer(
        "In a terminal it draws the history of the signal, else it prints a line a look; "
        "it changes\nnothing, and ends with status 0 on Ctrl-C. With --json a line is\n"
        "{\"event\": \"state\", \"seconds\", \"station\", \"access_point\"}, these as in "
        "wlanctl status --json;\n\"problem\" comes with it when the adapter is gone. The "
        "last line is the outcome.");
    command.callback(
        [&wlanctl, options, &result] { result = watch(*options, wlanctl.count("--json") > 0); });
}
