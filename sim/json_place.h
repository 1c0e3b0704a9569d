#pragma once

// Strict reading of JSON: a complaint says where in the text what was expected.

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

struct json_word {
    const char* text;
    int value;
};

/// One value and where it stands.
class json_place {
public:
    json_place(nlohmann::json value, std::string where);

    /// The value of a key, or `unset` without the key.
    json_place get(const char* key, const nlohmann::json& unset = nullptr) const;
    [[nodiscard]] bool given() const;
    [[nodiscard]] bool is_list() const;

    /// Holds the value to be an object with no keys but these.
    void only(const std::vector<std::string>& keys) const;
    [[nodiscard]] std::vector<std::pair<std::string, json_place>> entries() const;
    [[nodiscard]] std::vector<json_place> items(std::size_t most) const;
    [[nodiscard]] std::string text(std::size_t most) const;
    [[nodiscard]] int number(int low, int high) const;
    [[nodiscard]] bool yes() const;
    [[nodiscard]] int word(const std::vector<json_word>& words) const;

    [[noreturn]] void refuse(const std::string& expected) const;

private:
    nlohmann::json value_;
    std::string where_;
};
