// SPDX-License-Identifier: MIT
// What a command tells, as text or as JSON.

#pragma once

#include <cstddef>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// What a command has to tell: nothing, a truth, a number, a text, a list of entries, or named
/// fields in the order of telling.
class answer {
public:
    struct field;

    answer(std::nullptr_t = nullptr);
    answer(bool truth);
    answer(int number);
    answer(const char* text);
    answer(std::string text);
    answer(std::initializer_list<field> fields);

    static answer list(const std::vector<answer>& entries = {});
    static answer object();

    bool is_null() const { return kind_ == kind::nothing; }
    bool is_list() const { return kind_ == kind::list; }
    bool is_plain() const { return kind_ != kind::list && kind_ != kind::object; }

    int number() const { return number_; }
    const std::string& text() const { return text_; }

    /// Those of a list have no name.
    const std::vector<field>& fields() const { return fields_; }

    void push_back(answer entry);

    /// Adds the field, or takes the place of the one that has this name. The name is not copied.
    void set(const char* name, answer value);

    /// Takes the field out, if there is one.
    void remove(const char* name);

    /// @return the field's value; null when there is none of this name.
    const answer& at(const char* name) const;

    /// @return what it says in one cell of a table.
    std::string cell() const;

    /// @param indent of its lines but the first.
    std::string json(const std::string& indent = "") const;

    /// @return the same on one line.
    std::string json_line() const;

    /// Has people read something else than its fields.
    /// @param lines that are safe to print.
    void draw(std::string lines);
    bool is_drawn() const { return is_drawn_; }
    const std::string& drawn() const { return drawn_; }

    /// Makes every text in it safe to print.
    void escape_texts();

private:
    enum class kind { nothing, truth, number, text, list, object };

    std::string plain_json() const;

    kind kind_ = kind::nothing;
    int number_ = 0;
    std::string text_;
    std::vector<field> fields_;
    bool is_drawn_ = false;
    std::string drawn_;
};

struct answer::field {
    const char* name;
    answer value;
};

/// A command that was not carried out; what() says what was tried.
struct failure : std::runtime_error {
    failure(const std::string& tried, std::string what_next,
            answer what_was_found = answer::object())
        : std::runtime_error(tried), next(std::move(what_next)), found(std::move(what_was_found)) {}

    std::string next;              ///< what the reader can do about it
    answer found;                  ///< fields that can be told all the same
    std::string reason = "failed"; ///< the word for programs
    bool certain = true;           ///< whether the reason is more than likely
};

/// Lays an answer out for people, unless it is drawn: plain fields first, one a line; then every
/// object under its name and every list as a table.
std::string as_text(const answer& told);
