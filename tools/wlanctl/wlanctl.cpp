// SPDX-License-Identifier: MIT
// wlanctl, the command for the person in front of the camera.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "escape.h"

namespace {

constexpr int done = 0;
constexpr int failed = 1;
constexpr int wrong_usage = 2;

constexpr char description[] = "Controls the camera's Wi-Fi radio.";

constexpr char examples[] = R"(Examples:
  wlanctl adapter                               which adapter, which interfaces
  wlanctl survey --sort name                    which networks are in range
  wlanctl ap start --stored                     access point and DHCP server as stored
  wlanctl ap start --ssid Camera --auth wpa2psk asks for the key
  wlanctl join Office --key-file /root/key      the key from a file
  echo "$KEY" | wlanctl join Office --key-file -
  wlanctl join -- -odd-name-                    a name that begins with a dash
  wlanctl wps                                   a network by the router's WPS button
  wlanctl doctor                                what the camera lacks
  wlanctl --json status | jq .interfaces

Exit status: 0 done, 1 failed, 2 wrong usage. With --json the answer is one object on standard
output: "ok" and what the command's own help names ("done" and "next" for a mode), or, when "ok" is
false, "error" and "next". Diagnostics go to standard error. Bytes of names that cannot be printed
safely are shown as \xHH.)";

/// What becomes of one call.
struct outcome {
    int status = done;
    answer told = answer::object();
    std::string error;
    std::string next;
};

/// The library and the programs that it runs print to standard output, which is the answer's alone:
/// theirs goes to standard error from here on.
/// @return where the answer goes, not passed on to any program; null when it cannot go anywhere.
FILE* keep_standard_output() {
    const int kept = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    for (const int stream : {STDIN_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) // the caller closed it: it is the next to be opened
            open("/dev/null", O_RDWR);
    }
    if (kept < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return nullptr;
    setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // messages in the order in which they were printed
    return fdopen(kept, "w");
}

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
    return {wrong_usage, answer::object(), error, "see: " + name + " --help"};
}

/// @throws CLI::Success when help or version was asked for.
outcome run(CLI::App& wlanctl, int argc, char** argv, answer& result) {
    try {
        wlanctl.parse(argc, argv);
        return {done, result, {}, {}};
    } catch (const CLI::Success&) {
        throw;
    } catch (const CLI::ParseError& error) {
        return wrong(wlanctl, error.what());
    } catch (const failure& failure) {
        return {failed, failure.found, failure.what(), failure.next};
    }
}

/// Looked for by hand, since wrong usage can end the reading of the options before it is seen.
bool wants_json(int argc, char** argv) {
    char** const end = std::find(argv, argv + argc, std::string_view("--"));
    return std::find(argv, end, std::string_view("--json")) != end;
}

std::string as_json(const outcome& outcome) {
    answer object = {{"ok", outcome.status == done}};
    for (const auto& [name, value] : outcome.told.fields()) {
        object.set(name, value);
    }
    if (outcome.status != done) {
        object.set("error", outcome.error);
        object.set("next", outcome.next);
    }
    return object.json() + "\n";
}

int carry_out(int argc, char** argv, FILE* out) {
    answer result = answer::object();
    CLI::App wlanctl{description, "wlanctl"};
    wlanctl.set_version_flag("--version", "wlanctl " WLANCTL_VERSION);
    wlanctl.fallthrough(); // so that --json may stand anywhere
    wlanctl.require_subcommand(1);
    wlanctl.add_flag("--json", "Answer with one JSON object");
    for (const auto add :
         {add_adapter_command, add_survey_command, add_mode_commands, add_wps_command,
          add_status_command, add_store_command, add_bbp_command, add_doctor_command})
        add(wlanctl, result);
    wlanctl.footer(examples); // last, since commands take over what stands here when they are added

    std::ostringstream text;
    outcome outcome;
    const bool json = wants_json(argc, argv);
    try {
        outcome = run(wlanctl, argc, argv, result);
        outcome.told.escape_texts();
        outcome.error = escape(outcome.error);
        text << (json ? as_json(outcome) : as_text(outcome.told));
    } catch (const CLI::Success& asked) {
        wlanctl.exit(asked, text, text);
    }
    const bool written = std::fputs(text.str().c_str(), out) >= 0 && std::fclose(out) == 0;
    if (!written)
        std::fprintf(stderr, "wlanctl: writing the answer: %s\n", std::strerror(errno));
    if (!json && outcome.status != done)
        std::fprintf(stderr, "wlanctl: %s\n%s\n", outcome.error.c_str(), outcome.next.c_str());
    return written ? outcome.status : failed;
}

} // namespace

int main(int argc, char** argv) {
    // Whoever reads may leave (| head) in the midst of a mode. Daemons would inherit SIG_IGN.
    std::signal(SIGPIPE, [](int) {});
    try {
        FILE* out = keep_standard_output();
        if (out == nullptr) {
            std::fprintf(stderr, "wlanctl: opening standard output: %s\n", std::strerror(errno));
            return failed;
        }
        return carry_out(argc, argv, out);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "wlanctl: %s\n", error.what());
        return failed;
    }
}
