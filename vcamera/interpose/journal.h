// SPDX-License-Identifier: MIT
// The journal: one line in the scratch folder's file "journal" for every intercepted call,
// tab-separated: milliseconds, subject, request, text, length, answer.

#pragma once

#include <cstdint>

#include "vcamera/interpose/intercepted_call.h"

/// @param answer negative errno, exit status of a program (as wait() gives it), or anything else
/// for "ok".
void write_journal(std::int64_t microseconds, const intercepted_call& call, int answer);
