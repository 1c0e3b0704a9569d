#pragma once

#include <unistd.h>

/// A file descriptor that is closed when its owner leaves.
class descriptor {
public:
    explicit descriptor(int number) : number_(number) {}
    descriptor(const descriptor&) = delete;
    descriptor& operator=(const descriptor&) = delete;
    ~descriptor() {
        if (number_ >= 0)
            close(number_);
    }

    int number() const { return number_; }

private:
    int number_;
};
