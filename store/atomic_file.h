// SPDX-License-Identifier: MIT
// Replacing a file whole, or not at all.

#pragma once

#include <string>

#include "base/unique_fd.h"

namespace store {

/// Keeps other writers of a file out while it lives. The lock is a file beside it, since the file
/// itself is replaced by every write.
class write_lock {
public:
    explicit write_lock(const std::string& path);

private:
    libwlan::unique_fd file_;
};

/// Replaces the text of a file, keeping its mode and, where permitted, its owner. After a power cut
/// at any moment the file holds the old text or the new one. Needs the write_lock.
void replace_file(const std::string& path, const std::string& text);

} // namespace store
