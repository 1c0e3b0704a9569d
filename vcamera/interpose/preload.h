// SPDX-License-Identifier: MIT
// The environment in which the loader puts libvcamera.so between a program and libc.

#pragma once

#include <cstddef>

#include <alloca.h>

/// @return whether the loader takes a path in LD_PRELOAD as it is: it splits the variable at blanks
/// and colons, and replaces what follows a dollar sign.
bool can_preload(const char* path);

/// A program's environment, with the variables that it cannot be without on the camera. It is
/// written to memory of the caller's, as what is allocated between vfork() and exec stays with the
/// parent.
class preload_environment {
public:
    /// @param given the program's own; null is an empty one
    preload_environment(const char* library, const char* scratch, char* const* given);

    [[nodiscard]] std::size_t entries() const { return entries_; }
    [[nodiscard]] std::size_t bytes() const { return bytes_; }

    /// @param entries a place for each entry
    /// @param text so many bytes
    void write(char** entries, char* text) const;

private:
    struct kept_variable {
        const char* name;
        const char* value;
        bool is_list; // of which the value is the first, and the program's own follow
    };

    const kept_variable* find(const char* entry) const;

    kept_variable variables_[3];
    char* const* given_;
    std::size_t entries_ = 1; // for the null pointer at the end
    std::size_t bytes_ = 0;
};

/// @param start gets the environment, which lives until it returns.
template <typename Function>
int with_preload(const char* library, const char* scratch, char* const* given,
                 const Function& start) {
    const preload_environment environment(library, scratch, given);
    auto** entries = static_cast<char**>(alloca(environment.entries() * sizeof(char*)));
    environment.write(entries, static_cast<char*>(alloca(environment.bytes())));
    return start(entries);
}
