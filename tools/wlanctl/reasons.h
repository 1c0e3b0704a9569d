// SPDX-License-Identifier: MIT
// Why a request did not lead to what it was for.

#pragma once

#include <string>

#include "answer.h"

enum class reason {
    not_heard,
    wrong_key,
    refused,
    no_address,
    daemon_refused,
    program_missing,
    no_adapter,
    driver_refused,
    busy,
    timed_out,
    cancelled,
    store_failed,
    wrong_usage,
};

/// The word for programs.
const char* word_of(reason why);

/// What has become of a request that did not lead to what it was for.
struct setback {
    reason why;
    bool certain = true;             ///< else it is the likely reason
    std::string detail = {};         ///< said before the reason's own sentence
    answer found = answer::object(); ///< what else can be told
};

/// The failure that tells a reason in the words for people, with what to do next.
/// @param tried what the request was for.
failure because(const setback& setback, const std::string& tried);
