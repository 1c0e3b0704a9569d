#include "answer.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "escape.h"

namespace {

using row = std::vector<std::string>;

std::string label(std::string name) {
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

std::string cell(const answer& value) {
    if (value.is_null()) {
        return "-";
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
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

std::string bar(const figure& figure, int value) {
    constexpr int length = 5;
    const int marks = (std::clamp(value, figure.least, figure.most) - figure.least) * length /
                      (figure.most - figure.least);
    const std::string number = std::to_string(value);
    return std::string(static_cast<std::size_t>(marks), '#') +
           std::string(static_cast<std::size_t>(length - marks), '.') +
           std::string(number.size() < 4 ? 4 - number.size() : 1, ' ') + number + figure.unit;
}

/// Characters, not bytes: the bytes that continue a UTF-8 character take no place of their own.
std::size_t width(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string aligned(const std::vector<row>& rows, const std::string& indent = "") {
    std::vector<std::size_t> widths;
    for (const row& line : rows) {
        widths.resize(std::max(widths.size(), line.size()));
        for (std::size_t i = 0; i < line.size(); ++i) {
            widths[i] = std::max(widths[i], width(line[i]));
        }
    }
    std::string text;
    for (const row& line : rows) {
        text += indent;
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            text += line[i] + std::string(widths[i] - width(line[i]) + 2, ' ');
        }
        text += line.back() + "\n";
    }
    return text;
}

std::vector<row> field_rows(const answer& fields) {
    std::vector<row> rows;
    for (const auto& [name, value] : fields.items()) {
        if (value.is_primitive()) {
            rows.push_back({label(name), cell(value)});
        }
    }
    return rows;
}

std::vector<row> table_rows(const answer& list) {
    std::vector<row> rows;
    for (const answer& entry : list) {
        row names;
        row cells;
        for (const auto& [name, value] : entry.items()) {
            const figure* figure = find_figure(name);
            names.push_back(label(figure == nullptr ? name : name.substr(0, name.rfind('_'))));
            cells.push_back(figure == nullptr ? cell(value) : bar(*figure, value.get<int>()));
        }
        if (rows.empty()) {
            rows.push_back(names);
        }
        rows.push_back(cells);
    }
    return rows;
}

} // namespace

answer escaped(answer told) {
    const answer texts = told.flatten();
    for (const auto& [path, text] : texts.items()) {
        if (text.is_string()) {
            told[answer::json_pointer(path)] = escape(text.get_ref<const std::string&>());
        }
    }
    return told;
}

std::string as_text(const answer& told) {
    std::string text = aligned(field_rows(told));
    for (const auto& [name, value] : told.items()) {
        if (value.is_primitive() || value.empty()) {
            continue;
        }
        text += text.empty() ? "" : "\n";
        text += value.is_array() ? aligned(table_rows(value))
                                 : label(name) + "\n" + aligned(field_rows(value), "  ");
    }
    return text;
}
