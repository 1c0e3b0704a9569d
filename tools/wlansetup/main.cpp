// SPDX-License-Identifier: MIT
// wlansetup, a camera's way onto the network with a phone.

#include <algorithm>
#include <cctype>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include <arpa/inet.h>
#include <getopt.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "setup.h"

namespace {

constexpr int wrong_usage = 2;

constexpr char help[] =
    R"(Joins the stored network, or else serves the set-up page on the camera's access point.
Usage: wlansetup [OPTIONS]

Where the page is:
  --address ADDRESS   else the stored address of the access point
  --port PORT         80
  --name NAME         that leads to the page, too, as camera.lan; may be repeated
  --keep-page         on the joined network, too
Who may use it:
  --code-file FILE    holds the code on the camera's label that the page asks for
  --code CODE         the code itself; the process list shows it
  --slow SECONDS      that a browser may take for a request, 30
What runs beside it:
  --dns COMMAND       answers every name with the camera while its access point is up
  --dhcp COMMAND      asks for an address while the camera joins and is on a network
Times, in seconds:
  --wait SECONDS      for a network to be joined, 30
  --no-address        it counts as joined without an address
  --retry SECONDS     between tries of the stored network, 300; 0: none
  --check SECONDS     between looks at link and cable, 10
  --lost SECONDS      without a link until the network counts as gone, 60
  --shown SECONDS     that the access point outlives success, 20

  wlansetup --dns "dnsmasq -k -C /etc/dnsmasq.setup" --code-file /etc/label-code
  wlansetup --address 127.0.0.1 --port 8080 --no-address --retry 0     on a desk
)";

// getopt_long(), since CLI11's code would be as large as all of this program's own.
constexpr option long_options[] = {
    {"address", required_argument, nullptr, 'a'},   {"port", required_argument, nullptr, 'p'},
    {"name", required_argument, nullptr, 'n'},      {"keep-page", no_argument, nullptr, 'k'},
    {"code-file", required_argument, nullptr, 'f'}, {"code", required_argument, nullptr, 'c'},
    {"dns", required_argument, nullptr, 'D'},       {"dhcp", required_argument, nullptr, 'H'},
    {"no-address", no_argument, nullptr, 'A'},      {"slow", required_argument, nullptr, 's'},
    {"wait", required_argument, nullptr, 'w'},      {"retry", required_argument, nullptr, 'r'},
    {"check", required_argument, nullptr, 'C'},     {"lost", required_argument, nullptr, 'l'},
    {"shown", required_argument, nullptr, 'S'},     {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'v'},         {nullptr, 0, nullptr, 0},
};

struct number_option {
    int letter;
    int setup_options::*value;
    int least;
    int most;
};

constexpr number_option number_options[] = {
    {'w', &setup_options::wait, 5, 600},   {'r', &setup_options::retry, 0, 86400},
    {'C', &setup_options::check, 1, 3600}, {'l', &setup_options::lost, 0, 86400},
    {'S', &setup_options::shown, 0, 3600}, {'s', &setup_options::slow, 1, 3600},
    {'p', &setup_options::port, 1, 65535},
};

/// @throws std::string that says what is wrong.
void read_number(const number_option& row, const char* text, setup_options& options) {
    const char* const end = text + std::strlen(text);
    int number = 0;
    const auto [read_to, error] = std::from_chars(text, end, number);
    if (error != std::errc() || read_to != end || number < row.least || number > row.most) {
        throw std::string(text) + " is no number from " + std::to_string(row.least) + " to " +
            std::to_string(row.most);
    }
    options.*row.value = number;
}

std::string read_code(const char* path) {
    std::ifstream file(path);
    std::string code;
    if (!std::getline(file, code) || code.empty())
        throw std::string(path) + ": holds no code";
    return code;
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

void take_option(int letter, const char* value, setup_options& options) {
    const auto* number =
        std::find_if(std::begin(number_options), std::end(number_options),
                     [letter](const number_option& row) { return row.letter == letter; });
    if (number != std::end(number_options)) {
        read_number(*number, value, options);
        return;
    }
    switch (letter) {
    case 'a': {
        in_addr address{};
        if (inet_pton(AF_INET, value, &address) != 1)
            throw std::string(value) + " is no IPv4 address";
        options.address = value;
        break;
    }
    case 'n':
        options.names.push_back(lower(value));
        break;
    case 'k':
        options.keep_page = true;
        break;
    case 'f':
        options.code = read_code(value);
        break;
    case 'c':
        options.code = value;
        break;
    case 'D':
        options.dns_command = value;
        break;
    case 'H':
        options.dhcp_command = value;
        break;
    case 'A':
        options.needs_address = false;
        break;
    default:
        throw std::string("see: wlansetup --help");
    }
}

/// @return a status to exit with, or -1.
int read_options(int argc, char** argv, setup_options& options) {
    for (int letter = 0; (letter = getopt_long(argc, argv, "", long_options, nullptr)) != -1;) {
        if (letter == 'h')
            return std::fputs(help, stdout) < 0 ? 1 : 0;
        if (letter == 'v')
            return std::puts("wlansetup " WLANSETUP_VERSION) < 0 ? 1 : 0;
        take_option(letter, optarg, options);
    }
    if (optind < argc)
        throw std::string("unknown argument: ") + argv[optind];
    return -1;
}

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

int run(int argc, char** argv) {
    setup_options options;
    const int status = read_options(argc, argv, options);
    if (status >= 0)
        return status;
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
    } catch (const std::string& wrong) {
        std::fprintf(stderr, "wlansetup: %s\n", wrong.c_str());
        return wrong_usage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "wlansetup: %s\n", error.what());
        return 1;
    }
}
