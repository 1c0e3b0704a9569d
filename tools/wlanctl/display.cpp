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

constexpr marks blocks = {"█", "▒", "·", "│", "×", {" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"}};
constexpr marks letters = {"#", "+", ".", "|", "x", {" ", ".", ".", ":", ":", "|", "|", "#", "#"}};

constexpr int usual_columns = 80; // a serial line tells none
constexpr int usual_rows = 24;
constexpr int least_columns = 20;
constexpr int most_columns = 1000;

const char* variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

void measure(int terminal, display& display) {
    winsize size{};
    if (ioctl(terminal, TIOCGWINSZ, &size) != 0)
        size = {};
    const int asked = std::atoi(variable("COLUMNS"));
    const int columns = asked > 0 ? asked : size.ws_col > 0 ? size.ws_col : usual_columns;
    display.columns = static_cast<std::size_t>(std::clamp(columns, least_columns, most_columns));
    display.rows = size.ws_row > 0 ? size.ws_row : usual_rows;
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
    measure(stream, display);
    display.moves = std::strcmp(variable("TERM"), "dumb") != 0;
    display.colours = display.moves && *variable("NO_COLOR") == '\0';
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
