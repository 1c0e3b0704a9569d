// SPDX-License-Identifier: MIT
// Requests of the library in a process of their own, which can be ended at any moment: some block
// for a minute and more, and leave descriptors open.

#pragma once

#include <functional>
#include <string>

/// What became of one.
struct work_done {
    bool finished;     ///< false when it was ended, or ended otherwise than by returning
    int result;        ///< what it returned
    std::string wrote; ///< to the descriptor that it was given, of which 1 MiB is kept
};

/// Carries `work` out in a child, and ends the child with all that it runs when the command is
/// asked to end. What it prints is taken in as diagnostics.
/// @param work gets a descriptor to write to.
/// @throws std::system_error when there can be no child.
work_done run_in_child(const std::function<int(int)>& work);
