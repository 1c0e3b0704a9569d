// SPDX-License-Identifier: MIT
// Strict reading of JSON.

#include "vcamera/scene/json_reader.h"

#include <algorithm>

#include "vcamera/scene/scene.h"

json_reader::json_reader(nlohmann::json value, std::string where)
    : value_(std::move(value)), where_(std::move(where)) {}

void json_reader::refuse(const std::string& expected) const {
    throw wrong_scene(where_ + ": expected " + expected);
}

json_reader json_reader::get(const char* key, const nlohmann::json& unset) const {
    return {value_.contains(key) ? value_[key] : unset, where_ + "." + key};
}

bool json_reader::given() const {
    return !value_.is_null();
}

bool json_reader::is_list() const {
    return value_.is_array();
}

void json_reader::only(const std::vector<std::string>& keys) const {
    for (const auto& [name, entry] : entries()) {
        if (std::find(keys.begin(), keys.end(), name) == keys.end())
            throw wrong_scene(entry.where_ + ": unknown key");
    }
}

std::vector<std::pair<std::string, json_reader>> json_reader::entries() const {
    if (!value_.is_object())
        refuse("an object");
    std::vector<std::pair<std::string, json_reader>> result;
    for (const auto& entry : value_.items())
        result.emplace_back(entry.key(), json_reader(entry.value(), where_ + "." + entry.key()));
    return result;
}

std::vector<json_reader> json_reader::items(std::size_t most) const {
    if (!value_.is_array() || value_.size() > most)
        refuse("a list of at most " + std::to_string(most));
    std::vector<json_reader> result;
    for (const nlohmann::json& item : value_)
        result.emplace_back(item, where_ + "[" + std::to_string(result.size()) + "]");
    return result;
}

std::string json_reader::text(std::size_t most) const {
    if (!value_.is_string() || value_.get_ref<const std::string&>().size() > most)
        refuse("a text of at most " + std::to_string(most) + " bytes");
    return value_;
}

int json_reader::number(int low, int high) const {
    // As a double, since a number that fits no int compares wrongly with one.
    if (!value_.is_number_integer() || value_.get<double>() < low || value_.get<double>() > high)
        refuse("a whole number from " + std::to_string(low) + " to " + std::to_string(high));
    return value_;
}

bool json_reader::yes() const {
    if (!value_.is_boolean())
        refuse("true or false");
    return value_;
}

int json_reader::word(const std::vector<json_keyword>& words) const {
    std::string known;
    for (const json_keyword& word : words) {
        if (value_ == word.text)
            return word.value;
        known += std::string(" ") + word.text;
    }
    refuse("one of" + known);
}
