// SPDX-License-Identifier: MIT
// What happens while a request is carried out.

#pragma once

#include <string>

#include "answer.h"

enum class progress_form {
    none,
    terminal, ///< one line of standard error, which the next one takes the place of
    json,     ///< an object a line on standard output
};

/// Nothing is shown before.
void show_progress(progress_form form);

progress_form shown_progress();

/// Tells what happens now.
/// @param event one of those that wlanctl(8) names.
/// @param fields that belong to it.
/// @return false when it could not be written.
bool tell_progress(const char* event, const answer& fields = answer::object());

/// Warns a person, and a program that reads the progress.
void tell_warning(const std::string& text);

/// Takes the line off the terminal.
void clear_progress();
