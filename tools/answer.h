#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

/// What a command has to tell: named fields in the order of telling.
using answer = nlohmann::ordered_json;

/// A command that was not carried out; what() says what was tried.
struct failure : std::runtime_error {
    failure(const std::string& tried, std::string what_next,
            answer what_was_found = answer::object())
        : std::runtime_error(tried), next(std::move(what_next)), found(std::move(what_was_found)) {}

    std::string next; ///< what the reader can do about it
    answer found;     ///< fields that can be told all the same
};

/// @return the answer with every text in it made safe to print.
answer escaped(answer told);

/// Lays an answer out for people: plain fields first, one a line; then every object under its name
/// and every list as a table.
std::string as_text(const answer& told);
