#pragma once

// The journal: one line in the scratch folder's file "journal" for everything that crossed,
// tab-separated: milliseconds, subject, request, text, length, answer.

#include "sim/crossing.h"

/// @param answer negative errno, exit status of a program (as wait() gives it), or anything else
/// for "ok".
void write_journal(std::int64_t microseconds, const crossing& call, int answer);
