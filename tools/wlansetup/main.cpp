// SPDX-License-Identifier: MIT
// wlansetup, a camera's way onto the network with a phone.

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>

#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>

#include "setup.h"

namespace {

constexpr char description[] =
    "Joins the stored network, or else serves the set-up page on the camera's access point.";

constexpr char footer[] = R"(Examples:
  wlansetup                               at boot
  wlansetup --dns "dnsmasq -k -C /etc/dnsmasq.setup"
  wlansetup --code-file /etc/label-code --keep-page
  wlansetup --address 127.0.0.1 --port 8080 --no-address --retry 0    on a desk)";

/// @return what ends the program, to be polled.
int take_ending_signals() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        sigaddset(&ending, signal);
    sigprocmask(SIG_BLOCK, &ending, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
}

bool has_ended(int signals) {
    signalfd_siginfo told{};
    return read(signals, &told, sizeof told) > 0;
}

void add_options(CLI::App& app, setup_options& options, std::string& code_file) {
    const auto seconds = [&](const char* name, int& value, const char* text, int least) {
        app.add_option(name, value, text)
            ->type_name("SECONDS")
            ->check(CLI::Range(least, 86400))
            ->capture_default_str();
    };
    app.add_option("--address", options.address,
                   "Where the page is; else the stored address of the access point")
        ->check(CLI::ValidIPV4);
    app.add_option("--port", options.http.port, "Its port")
        ->check(CLI::Range(1, 65535))
        ->capture_default_str();
    app.add_option("--name", options.http.names,
                   "A name that leads to the page, too, as camera.lan");
    auto* file = app.add_option("--code-file", code_file,
                                "File with the code on the camera's label that the page asks for");
    app.add_option("--code", options.code, "The code itself; the process list shows it")
        ->excludes(file);
    app.add_option("--dns", options.dns_command,
                   "Command that answers every name with the camera while its access point is up");
    app.add_option("--dhcp", options.dhcp_command,
                   "Command that asks for an address while the camera joins and is on a network");
    seconds("--wait", options.wait, "For a network to be joined", 5);
    seconds("--retry", options.retry, "Between tries of the stored network; 0: none", 0);
    seconds("--check", options.check, "Between looks at link and cable", 1);
    seconds("--lost", options.lost, "Without a link until the network counts as gone", 0);
    seconds("--shown", options.shown, "That the access point outlives success", 0);
    app.add_option("--slow", options.http.slow_seconds, "Seconds a browser may take for a request")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    app.add_flag("!--no-address", options.needs_address,
                 "A network counts as joined without an address");
    app.add_flag("--keep-page", options.keep_page, "Serve the page on the joined network, too");
}

void settle(setup_options& options, const std::string& code_file) {
    for (std::string& name : options.http.names) {
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    }
    if (code_file.empty())
        return;
    std::ifstream file(code_file);
    if (!std::getline(file, options.code) || options.code.empty())
        throw CLI::FileError(code_file + ": holds no code");
}

int run(int argc, char** argv) {
    CLI::App app{description, "wlansetup"};
    app.footer(footer);
    app.set_version_flag("--version", "wlansetup " WLANSETUP_VERSION);
    setup_options options;
    std::string code_file;
    add_options(app, options, code_file);
    try {
        app.parse(argc, argv);
        settle(options, code_file);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    umask(S_IRWXG | S_IRWXO); // the daemons' files hold the key
    const int signals = take_ending_signals();
    setup camera(std::move(options));
    camera.start();
    while (!has_ended(signals))
        camera.turn(signals);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "wlansetup: %s\n", error.what());
        return 1;
    }
}
