// SPDX-License-Identifier: MIT
// Tests call the library in this process, on a virtual camera of their own, and look at what
// reached the driver, the programs, the daemons, the files, the screen and the clock.

#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/folder_test.h"
#include "tests/support/scene.h"

struct sites;

using lines = std::vector<std::string>;

inline lines operator+(lines first, const lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// What a call gave back, wrote to the screen and left open.
struct outcome {
    int result;
    std::string out;
    std::string err;
    int opened = 0; // descriptors
};
bool operator==(const outcome& one, const outcome& other);
std::ostream& operator<<(std::ostream& stream, const outcome& outcome);

class camera_test : public folder_test {
protected:
    /// Puts the test on a fresh camera, whose files are those of the folder.
    void plug_in(const scene& camera) const;
    void plug_in(const std::string& scene) const;

    /// Lets some milliseconds of the camera's clock pass, in which started daemons write their pid files.
    static void let_daemons_start();

    /// What the library said to drivers, programs and daemons since plug_in(), and how long it
    /// waited, as "subject request text" and, unless all was well, " = answer".
    /// @param last so many of these lines, from the end.
    lines said(std::size_t last = SIZE_MAX) const;
};

/// How many descriptors this process holds.
int open_descriptors();

/// Runs a call and keeps what it did.
template <typename Call>
outcome watch(Call call) {
    const int before = open_descriptors();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = call();
    std::fflush(nullptr);
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string err = testing::internal::GetCapturedStderr();
    return {result, out, err, open_descriptors() - before};
}

/// What a survey listed: names alone, and "name|bssid|cipher|authentication|type|channel|rssi|signal".
lines names(const std::vector<sites>& list);
lines told(const std::vector<sites>& list);

template <typename... Arguments>
std::string print(const char* format, Arguments... arguments) {
    char line[1024];
    std::snprintf(line, sizeof line, format, arguments...);
    return line;
}

/// A text for the library, which takes them by char*.
inline char* text(const std::string& value) {
    return const_cast<char*>(value.c_str());
}
