// SPDX-License-Identifier: MIT
// Failures, and what a camera program hears of them.

#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include <sys/types.h>

#include "base/unique_fd.h"

namespace store {

/// Why a request could not be met, in one line for a person.
struct failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Throws "PATH: cannot DOING: " and what errno says.
[[noreturn]] void fail_with_errno(const std::string& path, const char* doing);

/// Opens a file, which programs that the camera starts meanwhile do not inherit.
/// @throw failure when it cannot be opened.
libwlan::unique_fd open_or_fail(const std::string& path, int flags, mode_t mode = 0);

/// Runs one request of a camera program, which knows results and no exceptions.
/// @return 0, or -1 after the reason on standard error.
int answer(const std::function<void()>& request);

} // namespace store
