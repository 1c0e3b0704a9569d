// SPDX-License-Identifier: MIT
// Strict reading of JSON: a complaint says where in the text what was expected.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

struct json_keyword {
    const char* text;
    int value;
};

/// One value and where it stands.
class json_reader {
public:
    json_reader(nlohmann::json value, std::string where);

    /// The value of a key, or `unset` without the key.
    json_reader get(const char* key, const nlohmann::json& unset = nullptr) const;
    [[nodiscard]] bool given() const;
    [[nodiscard]] bool is_list() const;

    /// Holds the value to be an object with no keys but these.
    void only(const std::vector<std::string>& keys) const;
    [[nodiscard]] std::vector<std::pair<std::string, json_reader>> entries() const;
    [[nodiscard]] std::vector<json_reader> items(std::size_t most) const;
    [[nodiscard]] std::string text(std::size_t most) const;
    [[nodiscard]] int number(int low, int high) const;
    [[nodiscard]] bool yes() const;
    [[nodiscard]] int word(const std::vector<json_keyword>& words) const;

    [[noreturn]] void refuse(const std::string& expected) const;

private:
    nlohmann::json value_;
    std::string where_;
};
