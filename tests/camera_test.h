#pragma once

// Tests call the library in this process, on a virtual camera of their own, and look at what
// reached the driver, the programs, the daemons, the files, the screen and the clock.

#include <string>
#include <vector>

#include <gtest/gtest.h>

using lines = std::vector<std::string>;

inline lines operator+(lines first, const lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// What a call gave back and wrote to the screen.
struct outcome {
    int result;
    std::string out;
    std::string err;
};

class camera_test : public testing::Test {
protected:
    camera_test();
    ~camera_test() override;

    /// Puts the test on a fresh camera.
    void plug_in(const std::string& scene);

    /// What the library said to drivers, programs and daemons since plug_in(), and how long it
    /// waited, as "subject request text" and, unless all was well, " = answer".
    lines said() const;

    /// The files of the camera, by their paths there.
    std::string read(const std::string& path) const;
    void write(const std::string& path, const std::string& text) const;
    bool exists(const std::string& path) const;

    const std::string folder;
};

/// Runs a call and keeps what it wrote.
template <typename Call>
outcome watch(Call call) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = call();
    std::fflush(nullptr);
    return {result, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

/// How many descriptors this process holds.
int open_descriptors();

/// A text that the library may take by char*.
inline char* text(std::string& value) {
    return value.data();
}
