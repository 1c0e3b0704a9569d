// SPDX-License-Identifier: MIT
// The environment in which the loader preloads libvcamera.so.

#include "vcamera/interpose/preload.h"

#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

namespace {

/// Whether a list with colons begins with a value.
bool begins_with(std::string_view list, std::string_view value) {
    return list.substr(0, list.find(':')) == value;
}

} // namespace

bool can_preload(const char* path) {
    return path[std::strcspn(path, " :$")] == '\0';
}

preload_environment::preload_environment(const char* library, const char* scratch,
                                         char* const* given)
    : variables_{
          {"LD_PRELOAD", library, true},
          // A program built with the address sanitizer insists on being first; the camera passes
          // all on.
          {"ASAN_OPTIONS", "verify_asan_link_order=0", true},
          {"VCAMERA_SCRATCH", scratch, false},
      },
      given_(given) {
    const auto room = [](const kept_variable& variable) {
        return std::strlen(variable.name) + std::strlen(variable.value) + sizeof "=:";
    };
    for (const kept_variable& variable : variables_) {
        ++entries_;
        bytes_ += room(variable);
    }
    for (; given != nullptr && *given != nullptr; ++given) {
        ++entries_;
        if (const kept_variable* known = find(*given))
            bytes_ += std::strlen(*given) + room(*known);
    }
}

const preload_environment::kept_variable* preload_environment::find(const char* entry) const {
    const std::string_view name(entry, std::strcspn(entry, "="));
    for (const kept_variable& variable : variables_) {
        if (name == variable.name && entry[name.size()] == '=')
            return &variable;
    }
    return nullptr;
}

void preload_environment::write(char** entries, char* text) const {
    const auto add = [&](const kept_variable& variable, const char* rest) {
        *entries++ = text;
        text += std::sprintf(text, "%s=%s", variable.name, variable.value);
        if (rest != nullptr && *rest != '\0')
            text += std::sprintf(text, ":%s", rest);
        ++text;
    };
    bool is_set[sizeof variables_ / sizeof *variables_] = {};
    for (char* const* entry = given_; entry != nullptr && *entry != nullptr; ++entry) {
        const kept_variable* known = find(*entry);
        const char* value = *entry + std::strcspn(*entry, "=") + 1;
        if (known != nullptr)
            is_set[known - variables_] = true;
        if (known == nullptr ||
            (known->is_list ? begins_with(value, known->value) : *value != '\0')) {
            *entries++ = *entry;
        } else {
            add(*known, known->is_list ? value : nullptr);
        }
    }
    for (const kept_variable& variable : variables_) {
        if (!is_set[&variable - variables_])
            add(variable, nullptr);
    }
    *entries = nullptr;
}
