// SPDX-License-Identifier: MIT
// Keys from a file or the terminal.

#include "key_input.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <CLI/CLI.hpp>

#include "answer.h"
#include "base/unique_fd.h"
#include "diagnostics.h"
#include "escape.h"

namespace {

constexpr std::size_t longest_key = 64;

constexpr int ending_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

termios shown; // of the terminal as it was found, where a signal handler can reach it

void show_and_end(int signal) {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

/// Keeps the terminal from showing what is typed, for as long as it lives or the program does.
class hidden_typing {
public:
    hidden_typing() {
        tcgetattr(STDIN_FILENO, &shown);
        for (const int signal : ending_signals)
            std::signal(signal, show_and_end);
        termios hidden = shown;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        hidden.c_cc[VSUSP] = _POSIX_VDISABLE; // a stopped command would leave the shell mute
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~hidden_typing() {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown); // also drops what was typed beyond the key
        for (const int signal : ending_signals)
            std::signal(signal, SIG_DFL);
    }
    hidden_typing(const hidden_typing&) = delete;
    hidden_typing& operator=(const hidden_typing&) = delete;
};

/// Reads to the end of a file, or one line of a terminal.
/// @return 0 or an errno value.
int read_key(int descriptor, std::string& key) {
    key.resize(longest_key + 3); // a key, CR, LF, and one byte to see that it is longer
    std::size_t length = 0;
    ssize_t count = 0;
    do {
        count = read(descriptor, &key[length], key.size() - length);
        length += count > 0 ? static_cast<std::size_t>(count) : 0;
    } while (count > 0 && length < key.size() && isatty(descriptor) == 0);
    key.resize(length);
    return count < 0 ? errno : 0;
}

void take_line(int error, const std::string& source, std::string& key) {
    if (error != 0) {
        throw failure("reading the key from " + source + ": " + std::strerror(error),
                      "name a file that can be read");
    }
    for (const char ending : {'\n', '\r'}) {
        if (!key.empty() && key.back() == ending)
            key.pop_back();
    }
}

} // namespace

void read_key_file(const std::string& path, std::string& key) {
    if (path == "-") {
        take_line(read_key(STDIN_FILENO, key), "standard input", key);
        return;
    }
    const libwlan::unique_fd file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const int error = file ? read_key(file.get(), key) : errno;
    take_line(error, path, key);
}

void prompt_for_key(const std::string& purpose, std::string& key) {
    if (isatty(STDIN_FILENO) == 0) {
        throw CLI::ValidationError(
            purpose,
            "needs a key; name a file that holds it with --key-file ('-' is standard input)");
    }
    int error = 0;
    {
        const hidden_typing hidden;
        std::fprintf(diagnostics::messages(), "Key for %s: ", escape(purpose).c_str());
        std::fflush(diagnostics::messages());
        error = read_key(STDIN_FILENO, key);
    }
    std::fputs("\n", diagnostics::messages());
    take_line(error, "the terminal", key);
}
