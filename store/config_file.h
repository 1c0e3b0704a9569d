// SPDX-License-Identifier: MIT
// The configuration file: sections of keys, each with its line.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "store/value_text.h"

namespace store {

/// One key of the file.
struct config_entry {
    std::string section;
    std::string key;
    value_lines value; ///< stands on as many lines of the file
    std::size_t line;  ///< of the key; the file's first is 0
};

/// The text of a configuration file, cut into its keys by inih.
class config_file {
public:
    /// @return CAMSTORE_FILE, or /etc/camera.conf when that is unset or empty.
    static std::string path();

    /// Reads a regular file of at most 64 KiB.
    static config_file load(const std::string& path);

    /// @param name what messages call the text.
    config_file(std::string name, const std::string& text);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; } ///< with ends
    [[nodiscard]] const std::vector<config_entry>& entries() const { return entries_; }

    /// @return the only entry of that name, or null without one; two throw a failure.
    [[nodiscard]] const config_entry* find(std::string_view section, std::string_view key) const;

    /// Throws a failure that names the file, the line of `entry` if there is one, and the key.
    [[noreturn]] void reject(const config_entry* entry, const std::string& section,
                             const std::string& key, const std::string& problem) const;

private:
    std::string name_;
    std::vector<std::string> lines_;
    std::vector<config_entry> entries_;
};

} // namespace store
