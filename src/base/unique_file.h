// SPDX-License-Identifier: MIT
// The owners of a standard I/O stream and of a program's output.

#pragma once

#include <cstdio>
#include <memory>

namespace libwlan {

struct file_closer {
    void operator()(FILE* file) const { std::fclose(file); }
};

struct pipe_closer {
    void operator()(FILE* pipe) const { pclose(pipe); }
};

/// A stream of fopen(), closed when its owner leaves.
using unique_file = std::unique_ptr<FILE, file_closer>;

/// A stream of popen(). Its owner waits for the program when it leaves.
using unique_pipe = std::unique_ptr<FILE, pipe_closer>;

inline unique_file open_file(const char* path, const char* mode) {
    return unique_file(std::fopen(path, mode));
}

} // namespace libwlan
