// SPDX-License-Identifier: MIT
// Where a file that the program names is on the host.

#pragma once

#include <climits>

#include <fcntl.h>

/// The host's path of a file: in the scratch folder for a file of the camera, else as it was given.
/// Allocates nothing, since calls also come from signal handlers and between vfork() and exec.
class host_path {
public:
    /// @param folder descriptor of the folder that a relative path starts in
    explicit host_path(const char* path, int folder = AT_FDCWD);
    host_path(const host_path&) = delete;
    host_path& operator=(const host_path&) = delete;

    operator const char*() const { return path_; }

    /// The path by which the camera knows its file; null for a file that is not the camera's.
    [[nodiscard]] const char* of_camera() const { return of_camera_; }

private:
    const char* path_;
    const char* of_camera_ = nullptr;
    char text_[2 * PATH_MAX]; // of the scratch folder, and of the path in it
};
