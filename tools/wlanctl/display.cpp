// SPDX-License-Identifier: MIT
// Where an answer is shown, and what can be drawn there.

#include "display.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

#include "diagnostics.h"

namespace {

constexpr marks blocks = {"█", "▒", "·", {" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"}, 8};
constexpr marks letters = {"#", "+", ".", {" ", "#", "#", "#", "#", "#", "#", "#", "#"}, 1};

constexpr int least_columns = 20;
constexpr int most_columns = 1000;

const char* variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::size_t columns_of(int terminal) {
    int columns = std::atoi(variable("COLUMNS"));
    winsize size{};
    if (columns <= 0 && ioctl(terminal, TIOCGWINSZ, &size) == 0)
        columns = size.ws_col;
    constexpr int usual = 80; // a serial line tells none
    return static_cast<std::size_t>(
        columns <= 0 ? usual : std::clamp(columns, least_columns, most_columns));
}

bool takes_utf8() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        std::string value = variable(name);
        if (value.empty())
            continue;
        std::transform(value.begin(), value.end(), value.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return value.find("utf-8") != std::string::npos || value.find("utf8") != std::string::npos;
    }
    return false;
}

const char* colour_of(int percent) {
    constexpr int good = 60;
    constexpr int fair = 30;
    return percent >= good ? "\033[32m" : percent >= fair ? "\033[33m" : "\033[31m";
}

} // namespace

display answer_display() {
    display display;
    if (diagnostics::answers() == nullptr)
        return display;
    const int stream = fileno(diagnostics::answers());
    display.is_terminal = isatty(stream) == 1;
    if (!display.is_terminal)
        return display;
    display.utf8 = takes_utf8();
    display.columns = columns_of(stream);
    display.colours = *variable("NO_COLOR") == '\0' && std::strcmp(variable("TERM"), "dumb") != 0;
    return display;
}

const marks& marks_of(const display& display) {
    return display.utf8 ? blocks : letters;
}

std::string repeated(const char* mark, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += mark;
    return text;
}

std::string signal_bar(const display& display, int percent) {
    constexpr int length = 5;
    const int share = std::clamp(percent, 0, 100);
    const auto full = static_cast<std::size_t>(share * length / 100);
    const marks& marks = marks_of(display);
    const std::string bar = repeated(marks.full, full);
    return (display.colours && full > 0 ? colour_of(share) + bar + "\033[0m" : bar) +
           repeated(marks.empty, length - full);
}
