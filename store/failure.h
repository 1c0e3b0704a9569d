#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace store {

/// Why a request could not be met, in one line for a person.
struct failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Throws "PATH: cannot DOING: " and what errno says.
[[noreturn]] void fail_with_errno(const std::string& path, const char* doing);

/// Runs one request of a camera program, which knows results and no exceptions.
/// @return 0, or -1 after the reason on standard error.
int answer(const std::function<void()>& request);

} // namespace store
