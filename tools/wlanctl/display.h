// SPDX-License-Identifier: MIT
// Where an answer is shown, and what can be drawn there.

#pragma once

#include <cstddef>
#include <string>

struct display {
    bool is_terminal = false;
    bool moves = false;      ///< its cursor can be moved
    std::size_t columns = 0; ///< 0: as many as it takes
    std::size_t rows = 0;    ///< likewise
    bool utf8 = false;
    bool colours = false;
};

/// Asks anew: a terminal's width changes. COLUMNS comes before what the terminal says; LC_ALL,
/// LC_CTYPE and LANG tell whether it takes UTF-8; with NO_COLOR it gets no colours.
display answer_display();

/// Characters to draw with.
struct marks {
    const char* full;
    const char* half; ///< a lighter one
    const char* empty;
    const char* axis;      ///< of a curve
    const char* gap;       ///< in a curve
    const char* levels[9]; ///< of a curve, from nothing to full
};

const marks& marks_of(const display& display);

/// @return so many of a mark.
std::string repeated(const char* mark, std::size_t count);

/// A bar of five marks, coloured by its value where that is possible.
/// @param percent 0 to 100.
std::string signal_bar(const display& display, int percent);
