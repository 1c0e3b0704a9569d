// SPDX-License-Identifier: MIT
// wlanctl, the command for the person in front of the camera.

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "diagnostics.h"
#include "escape.h"
#include "progress.h"
#include "reasons.h"

namespace {

constexpr int done = 0;
constexpr int failed = 1;
constexpr int wrong_usage = 2;

constexpr char description[] = "Controls the camera's Wi-Fi radio.";

constexpr char examples[] = R"(Examples:
  wlanctl survey                                which networks are in range
  wlanctl survey --channels                     which channel is the clearest
  wlanctl join Office                           asks for the key when Office needs one
  wlanctl join Office --key-file /root/key --store   and joins it again at the next start
  echo "$KEY" | wlanctl join Office --key-file -
  wlanctl join -- -odd-name-                    a name that begins with a dash
  wlanctl join --stored --or-ap                 or else the stored access point
  wlanctl ap start --stored                     access point and DHCP server as stored
  wlanctl wps                                   a network by the router's WPS button
  wlanctl status                                is it on the network?
  wlanctl watch                                 link and signal as they change
  wlanctl doctor                                what the camera lacks
  wlanctl --json status | jq .interfaces

Exit status: 0 done, 1 failed, 2 wrong usage. With --json the answer is one object on standard
output: "ok" and what the command's own help names, or, when "ok" is false, "reason", "certain",
"error" and "next". Bytes of names that cannot be printed safely are shown, and taken, as \xHH.
wlanctl(8) tells reasons and events.)";

/// What becomes of one call.
struct outcome {
    int status = done;
    answer told = answer::object();
    std::string error = {};
    std::string next = {};
    std::string reason = {};
    bool certain = true;
};

/// What was wrong, and with which command.
outcome wrong(const CLI::App& wlanctl, std::string error) {
    std::string name = wlanctl.get_name();
    const CLI::App* command = &wlanctl;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        name += " " + command->get_name();
    }
    const auto unknown = wlanctl.remaining(true);
    if (!command->get_subcommands(nullptr).empty() && !unknown.empty()) {
        error = (unknown.front()[0] == '-' ? "unknown option: " : "unknown command: ") +
                unknown.front();
    }
    return {wrong_usage, answer::object(), error, "see: " + name + " --help",
            word_of(reason::wrong_usage)};
}

/// @throws CLI::Success when help or version was asked for.
outcome run(CLI::App& wlanctl, int argc, char** argv, answer& result) {
    try {
        wlanctl.parse(argc, argv);
        return {done, result};
    } catch (const CLI::Success&) {
        throw;
    } catch (const CLI::ParseError& error) {
        return wrong(wlanctl, error.what());
    } catch (const failure& failure) {
        return {failed,       failure.found,  failure.what(),
                failure.next, failure.reason, failure.certain};
    }
}

/// Looked for by hand, since wrong usage can end the reading of the options before it is seen.
bool has_flag(int argc, char** argv, std::string_view flag) {
    char** const end = std::find(argv, argv + argc, std::string_view("--"));
    return std::find(argv, end, flag) != end;
}

answer as_object(const outcome& outcome) {
    answer object = {{"ok", outcome.status == done}};
    if (outcome.status != done) {
        object.set("reason", outcome.reason);
        object.set("certain", outcome.certain);
    }
    for (const auto& [name, value] : outcome.told.fields())
        object.set(name, value);
    if (outcome.status != done) {
        object.set("error", outcome.error);
        object.set("next", outcome.next);
    }
    return object;
}

/// What was printed, for people: bytes that would steer a terminal are escaped.
std::string escaped_lines(const std::string& printed) {
    std::string text;
    std::istringstream lines(printed);
    for (std::string line; std::getline(lines, line);)
        text += escape(line) + "\n";
    return text;
}

/// The texts that a command line leads to.
struct spoken {
    std::string answer;
    std::string message;
};

spoken as_lines_of_json(const outcome& outcome, bool progress) {
    const answer object = as_object(outcome);
    if (!progress)
        return {object.json() + "\n", ""};
    answer event = {{"event", "outcome"}};
    for (const auto& [name, value] : object.fields())
        event.set(name, value);
    return {event.json_line() + "\n", ""};
}

spoken as_people_read(outcome outcome, bool verbose) {
    outcome.told.remove("outcome"); // the sentence says it
    if (outcome.status == done)
        return {as_text(outcome.told), ""};
    outcome.told.remove("lines"); // they are among what was printed
    const std::string printed = verbose ? "" : escaped_lines(diagnostics::printed());
    return {as_text(outcome.told),
            printed + "wlanctl: " + outcome.error + "\n" + outcome.next + "\n"};
}

bool write_to(FILE* stream, const std::string& text) {
    return stream != nullptr && std::fputs(text.c_str(), stream) >= 0 && std::fflush(stream) == 0;
}

int carry_out(int argc, char** argv) {
    answer result = answer::object();
    CLI::App wlanctl{description, "wlanctl"};
    wlanctl.set_version_flag("--version", "wlanctl " WLANCTL_VERSION);
    wlanctl.fallthrough(); // so that --json may stand anywhere
    wlanctl.require_subcommand(1);
    wlanctl.add_flag("--json", "Answer with one JSON object");
    wlanctl.add_flag("--progress",
                     "With --json: one object a line as things happen, last the answer");
    wlanctl.add_flag("--verbose", "Show what the library and its programs print");
    for (const auto add : {add_adapter_command, add_survey_command, add_store_command,
                           add_mode_commands, add_wps_command, add_status_command,
                           add_watch_command, add_bbp_command, add_doctor_command})
        add(wlanctl, result);
    wlanctl.footer(examples); // last, since commands take over what stands here when they are added

    const bool json = has_flag(argc, argv, "--json");
    const bool progress = has_flag(argc, argv, "--progress");
    const bool verbose = has_flag(argc, argv, "--verbose");
    const bool on_terminal = isatty(fileno(diagnostics::messages())) == 1;
    show_progress(json          ? progress ? progress_form::json : progress_form::none
                  : on_terminal ? progress_form::terminal
                                : progress_form::none);
    outcome outcome;
    spoken spoken;
    try {
        outcome = run(wlanctl, argc, argv, result);
        diagnostics::take_in();
        outcome.told.escape_texts();
        outcome.error = escape(outcome.error);
        spoken = json ? as_lines_of_json(outcome, shown_progress() == progress_form::json)
                      : as_people_read(outcome, verbose);
    } catch (const CLI::Success& asked) {
        std::ostringstream text;
        wlanctl.exit(asked, text, text);
        spoken.answer = text.str();
    }
    clear_progress();
    const bool written = write_to(diagnostics::answers(), spoken.answer);
    if (!written) {
        spoken.message +=
            std::string("wlanctl: writing the answer: ") + std::strerror(errno) + "\n";
    }
    write_to(diagnostics::messages(), spoken.message);
    return written ? outcome.status : failed;
}

} // namespace

int main(int argc, char** argv) {
    // Whoever reads may leave (| head) in the midst of a mode. Daemons would inherit SIG_IGN.
    std::signal(SIGPIPE, [](int) {});
    std::setlocale(LC_CTYPE, "C.UTF-8"); // as names are shown, whatever the camera's own is
    try {
        diagnostics::collect(has_flag(argc, argv, "--verbose"));
        return carry_out(argc, argv);
    } catch (const std::exception& error) {
        write_to(diagnostics::messages(), std::string("wlanctl: ") + error.what() + "\n");
        return failed;
    }
}
