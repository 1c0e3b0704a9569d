// SPDX-License-Identifier: MIT
// Where a file that the program names is on the host.

#include "vcamera/interpose/host_path.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include <unistd.h>

#include "vcamera/interpose/interposer.h"
#include "vcamera/model/paths.h"

namespace {

/// An absolute path that is put together without ".", ".." and empty components. What is a symbolic
/// link is not looked at.
struct absolute_path {
    char* text; // of PATH_MAX bytes
    std::size_t length = 0;

    /// @return whether there was room.
    bool append(const char* path) {
        while (*path != '\0') {
            path += std::strspn(path, "/");
            const std::string_view part(path, std::strcspn(path, "/"));
            path += part.size();
            if (part == "..") {
                while (length > 0 && text[--length] != '/') {
                }
            } else if (!part.empty() && part != ".") {
                if (length + 1 + part.size() >= PATH_MAX)
                    return false;
                text[length++] = '/';
                length += part.copy(text + length, part.size());
            }
        }
        text[length] = '\0';
        return true;
    }

    bool append_folder(int descriptor) {
        char folder[PATH_MAX];
        if (descriptor == AT_FDCWD)
            return getcwd(folder, sizeof folder) != nullptr && append(folder);
        char link[32];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
        const ssize_t size = NEXT(readlink)(link, folder, sizeof folder - 1);
        if (size < 0)
            return false;
        folder[size] = '\0';
        return append(folder);
    }
};

} // namespace

host_path::host_path(const char* path, int folder) : path_(path) {
    const char* scratch = scratch_folder();
    if (scratch == nullptr || path == nullptr || *path == '\0')
        return;
    const int errno_before = errno;
    const std::size_t length = strnlen(scratch, PATH_MAX);
    std::memcpy(text_, scratch, length);
    absolute_path absolute{text_ + length};
    if ((*path == '/' || absolute.append_folder(folder)) && absolute.append(path) &&
        belongs_to_camera(absolute.text)) {
        of_camera_ = absolute.text;
        path_ = text_;
    }
    errno = errno_before;
}
