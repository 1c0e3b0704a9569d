// SPDX-License-Identifier: MIT
// The owner of a file descriptor.

#pragma once

#include <unistd.h>

namespace libwlan {

/// Closes its descriptor when it leaves; a negative number is none.
class unique_fd {
public:
    unique_fd() = default;
    explicit unique_fd(int number) : number_(number) {}
    unique_fd(unique_fd&& other) noexcept : number_(other.leave_open()) {}
    unique_fd(const unique_fd&) = delete;
    unique_fd& operator=(const unique_fd&) = delete;
    unique_fd& operator=(unique_fd&&) = delete;
    ~unique_fd() {
        if (number_ >= 0)
            close(number_);
    }

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

    /// Lets the descriptor go without closing it: whoever takes the number closes it, or nobody.
    int leave_open() {
        const int number = number_;
        number_ = -1;
        return number;
    }

private:
    int number_ = -1;
};

} // namespace libwlan
