// SPDX-License-Identifier: MIT
// What a command tells, as text or as JSON.

#include "answer.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "escape.h"
#include "layout.h"

namespace {

using row = text_row;

std::string label(std::string name) {
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

std::string quoted(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            json += '\\';
        json += c; // without control characters: answers are escaped before they are told
    }
    return json + '"';
}

// Figures of a table that are easier compared as bars, by the end of their name.
constexpr struct figure {
    std::string_view ending;
    const char* unit;
    int least; ///< an empty bar
    int most;  ///< a full one
} figures[] = {{"_percent", " %", 0, 100}, {"_dbm", " dBm", -100, -50}};

const figure* find_figure(const std::string& name) {
    const auto* found = std::find_if(std::begin(figures), std::end(figures), [&](const figure& f) {
        return name.size() > f.ending.size() &&
               name.compare(name.size() - f.ending.size(), std::string::npos, f.ending) == 0;
    });
    return found == std::end(figures) ? nullptr : found;
}

/// The name without the unit.
std::string stem(const std::string& name) {
    return name.substr(0, name.rfind('_'));
}

std::string bar(const figure& figure, int value) {
    constexpr int length = 5;
    const int marks = (std::clamp(value, figure.least, figure.most) - figure.least) * length /
                      (figure.most - figure.least);
    const std::string number = std::to_string(value);
    return std::string(static_cast<std::size_t>(marks), '#') +
           std::string(static_cast<std::size_t>(length - marks), '.') +
           std::string(number.size() < 4 ? 4 - number.size() : 1, ' ') + number + figure.unit;
}

std::vector<row> field_rows(const answer& object) {
    std::vector<row> rows;
    for (const auto& [name, value] : object.fields()) {
        if (!value.is_plain())
            continue;
        const figure* figure = find_figure(name);
        if (figure == nullptr) {
            rows.push_back({label(name), value.cell()});
        } else {
            rows.push_back(
                {label(stem(name)), value.cell() + (value.is_null() ? "" : figure->unit)});
        }
    }
    return rows;
}

std::vector<row> table_rows(const answer& list) {
    std::vector<row> rows;
    for (const auto& [unnamed, entry] : list.fields()) {
        row names;
        row cells;
        for (const auto& [key, value] : entry.fields()) {
            const std::string name = key;
            const figure* figure = find_figure(name);
            names.push_back(label(figure == nullptr ? name : stem(name)));
            cells.push_back(figure == nullptr || value.is_null() ? value.cell()
                                                                 : bar(*figure, value.number()));
        }
        if (rows.empty())
            rows.push_back(names);
        rows.push_back(cells);
    }
    return rows;
}

} // namespace

answer::answer(std::nullptr_t) {}

answer::answer(bool truth) : kind_(kind::truth), number_(truth ? 1 : 0) {}

answer::answer(int number) : kind_(kind::number), number_(number) {}

answer::answer(const char* text) : kind_(kind::text), text_(text) {}

answer::answer(std::string text) : kind_(kind::text), text_(std::move(text)) {}

answer::answer(std::initializer_list<field> fields) : kind_(kind::object), fields_(fields) {}

answer answer::list(const std::vector<answer>& entries) {
    answer list;
    list.kind_ = kind::list;
    for (const answer& entry : entries)
        list.push_back(entry);
    return list;
}

answer answer::object() {
    answer object;
    object.kind_ = kind::object;
    return object;
}

void answer::push_back(answer entry) {
    fields_.push_back({"", std::move(entry)});
}

void answer::set(const char* name, answer value) {
    for (field& present : fields_) {
        if (std::strcmp(present.name, name) == 0) {
            present.value = std::move(value);
            return;
        }
    }
    fields_.push_back({name, std::move(value)});
}

void answer::remove(const char* name) {
    const auto has_name = [name](const field& each) { return std::strcmp(each.name, name) == 0; };
    fields_.erase(std::remove_if(fields_.begin(), fields_.end(), has_name), fields_.end());
}

const answer& answer::at(const char* name) const {
    static const answer none;
    for (const field& present : fields_) {
        if (std::strcmp(present.name, name) == 0)
            return present.value;
    }
    return none;
}

std::string answer::cell() const {
    switch (kind_) {
    case kind::nothing:
        return "-";
    case kind::truth:
        return number_ != 0 ? "yes" : "no";
    case kind::number:
        return std::to_string(number_);
    default:
        return text_;
    }
}

std::string answer::plain_json() const {
    switch (kind_) {
    case kind::nothing:
        return "null";
    case kind::truth:
        return number_ != 0 ? "true" : "false";
    case kind::number:
        return std::to_string(number_);
    default:
        return quoted(text_);
    }
}

std::string answer::json(const std::string& indent) const {
    if (is_plain())
        return plain_json();
    const std::string inner = indent + "  ";
    std::string lines;
    for (const auto& [name, value] : fields_) {
        lines += (lines.empty() ? "\n" : ",\n") + inner;
        lines += kind_ == kind::object ? quoted(name) + ": " : "";
        lines += value.json(inner);
    }
    lines += lines.empty() ? "" : "\n" + indent;
    return kind_ == kind::object ? "{" + lines + "}" : "[" + lines + "]";
}

std::string answer::json_line() const {
    if (is_plain())
        return plain_json();
    std::string line;
    for (const auto& [name, value] : fields_) {
        line += line.empty() ? "" : ", ";
        line += kind_ == kind::object ? quoted(name) + ": " : "";
        line += value.json_line();
    }
    return kind_ == kind::object ? "{" + line + "}" : "[" + line + "]";
}

void answer::escape_texts() {
    text_ = escape(text_);
    for (field& each : fields_)
        each.value.escape_texts();
}

void answer::draw(std::string lines) {
    is_drawn_ = true;
    drawn_ = std::move(lines);
}

std::string as_text(const answer& told) {
    if (told.is_drawn())
        return told.drawn();
    std::string text = aligned(field_rows(told));
    for (const auto& [name, value] : told.fields()) {
        if (value.is_plain() || value.fields().empty())
            continue;
        text += text.empty() ? "" : "\n";
        text += value.is_list() ? aligned(table_rows(value))
                                : label(name) + "\n" + aligned(field_rows(value), "  ");
    }
    return text;
}
