#pragma once

// Tests call the library in this process, on a virtual camera of their own, and look at what
// reached the driver, the programs, the daemons, the files, the screen and the clock.

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

class camera_test : public testing::Test {
protected:
    camera_test();
    ~camera_test() override;

    /// Puts the test on a fresh camera.
    void plug_in(const std::string& scene);

    /// What the library said to drivers, programs and daemons since plug_in(), and how long it
    /// waited, as "subject request text" and, unless all was well, " = answer".
    /// @param last so many of these lines, from the end.
    lines said(std::size_t last = SIZE_MAX) const;

    /// The files of the camera, by their paths there.
    std::string read(const std::string& path) const;
    void write(const std::string& path, const std::string& text) const;
    bool exists(const std::string& path) const;

    const std::string folder;
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
    char line[256];
    std::snprintf(line, sizeof line, format, arguments...);
    return line;
}

/// A text that the library may take by char*.
inline char* text(std::string& value) {
    return value.data();
}
