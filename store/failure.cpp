// SPDX-License-Identifier: MIT
// Failures, and what a camera program hears of them.

#include "store/failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>

#include "store/value_text.h"

void store::fail_with_errno(const std::string& path, const char* doing) {
    throw failure(path + ": cannot " + doing + ": " + std::strerror(errno));
}

libwlan::unique_fd store::open_or_fail(const std::string& path, int flags, mode_t mode) {
    libwlan::unique_fd file(open(path.c_str(), flags | O_CLOEXEC, mode));
    if (!file)
        fail_with_errno(path, (flags & O_CREAT) != 0 ? "create" : "open");
    return file;
}

int store::answer(const std::function<void()>& request) {
    try {
        request();
        return 0;
    } catch (const std::exception& reason) {
        std::string line;
        for (const char byte : std::string(reason.what()))
            append_printable(line, byte);
        std::fputs((line + "\n").c_str(), stderr);
        return -1;
    }
}
