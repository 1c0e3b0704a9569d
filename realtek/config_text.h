#pragma once

#include <cstring>

/// Whether a text can stand in a daemon's configuration file: a line feed in a name or a key would
/// start a line of its own there.
inline bool fits_one_line(const char* text) {
    return text != nullptr && std::strchr(text, '\n') == nullptr;
}
