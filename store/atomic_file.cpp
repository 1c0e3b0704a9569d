// SPDX-License-Identifier: MIT
// Replacing a file whole, or not at all.

#include "store/atomic_file.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "store/failure.h"

namespace {

using libwlan::unique_fd;
using store::fail_with_errno;
using store::open_or_fail;

void flush(const unique_fd& file, const std::string& path) {
    if (::fsync(file.get()) != 0)
        fail_with_errno(path, "flush");
}

void write_copy(const std::string& path, const std::string& text, const struct stat& original) {
    const unique_fd file = open_or_fail(path, O_WRONLY | O_CREAT | O_EXCL, 0600);
    for (std::size_t written = 0; written < text.size();) {
        const ssize_t step = ::write(file.get(), &text[written], text.size() - written);
        if (step < 0)
            fail_with_errno(path, "write");
        written += static_cast<std::size_t>(step);
    }
    // Only root may give a file away; a program that is not keeps it as its own.
    if (::fchown(file.get(), original.st_uid, original.st_gid) != 0 && errno != EPERM)
        fail_with_errno(path, "set the owner");
    if (::fchmod(file.get(), original.st_mode & 07777U) != 0)
        fail_with_errno(path, "set the mode");
    flush(file, path);
}

} // namespace

store::write_lock::write_lock(const std::string& path)
    : file_(open_or_fail(path + ".lock", O_RDWR | O_CREAT, 0600)) {
    while (::flock(file_.get(), LOCK_EX) != 0) {
        if (errno != EINTR)
            fail_with_errno(path, "lock");
    }
}

void store::replace_file(const std::string& path, const std::string& text) {
    const std::string copy = path + ".new";
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    const unique_fd entries = open_or_fail(folder, O_RDONLY | O_DIRECTORY);
    struct stat original = {};
    if (::stat(path.c_str(), &original) != 0)
        fail_with_errno(path, "read");
    ::unlink(copy.c_str()); // what a power cut left behind
    try {
        write_copy(copy, text, original);
        if (::rename(copy.c_str(), path.c_str()) != 0)
            fail_with_errno(path, "replace");
    } catch (...) {
        ::unlink(copy.c_str());
        throw;
    }
    flush(entries, folder);
}
