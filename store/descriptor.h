#pragma once

#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "store/failure.h"

namespace store {

/// Opens a file for as long as the object lives.
class descriptor {
public:
    /// Throws a failure when the file cannot be opened. Programs that the camera starts meanwhile
    /// do not inherit it.
    descriptor(const std::string& path, int flags, mode_t mode = 0)
        : number_(::open(path.c_str(), flags | O_CLOEXEC, mode)) {
        if (number_ < 0) {
            fail_with_errno(path, (flags & O_CREAT) != 0 ? "create" : "open");
        }
    }
    ~descriptor() { ::close(number_); }
    descriptor(const descriptor&) = delete;
    descriptor& operator=(const descriptor&) = delete;

    [[nodiscard]] int get() const { return number_; }

private:
    int number_;
};

} // namespace store
