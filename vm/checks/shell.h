// SPDX-License-Identifier: MIT
// Running the machine's programs.

#pragma once

#include <string>

#include <unistd.h>

/// @return what a command prints on standard output, without the last line feed.
std::string output_of(const std::string& command);

/// Asks again once a second until the answer is true.
/// @return whether it became true in that many seconds.
template <typename Question>
bool becomes_true(int seconds, Question question) {
    for (; seconds > 0; --seconds) {
        if (question())
            return true;
        sleep(1);
    }
    return question();
}
