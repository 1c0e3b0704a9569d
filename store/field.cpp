// SPDX-License-Identifier: MIT
// Values of the file and fields of the records.

#include "store/field.h"

#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>

#include <arpa/inet.h>

#include "store/failure.h"
#include "store/value_text.h"

namespace {

using store::field;
using store::form;

template <typename Number>
std::optional<Number> number_from(const std::string& value) {
    Number result = 0;
    const char* end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, result);
    return stop == end && error == std::errc() ? std::optional(result) : std::nullopt;
}

std::optional<unsigned char> byte_from(const field& field, const std::string& value) {
    for (const store::word& word : field.words) {
        if (value == word.name)
            return word.value;
    }
    return number_from<unsigned char>(value);
}

bool is_bssid(const std::string& value) {
    constexpr std::string_view pattern = "hh:hh:hh:hh:hh:hh";
    for (std::size_t i = 0; i < value.size() && i < pattern.size(); ++i) {
        const bool digit = std::isxdigit(static_cast<unsigned char>(value[i])) != 0;
        if (pattern[i] == 'h' ? !digit : value[i] != ':')
            return false;
    }
    return value.empty() || value.size() == pattern.size();
}

bool is_ipv4(const std::string& value) {
    in_addr address = {};
    return ::inet_pton(AF_INET, value.c_str(), &address) == 1;
}

// Both ways of filling a place return what is wrong with the value, empty when nothing is.

std::string put_byte(const field& field, const std::string& value, char* place) {
    const auto byte = byte_from(field, value);
    if (!byte) {
        std::string words;
        for (const store::word& word : field.words)
            words.append(words.empty() ? "none of " : ", ").append(word.name);
        return '"' + value + "\" is " + words + (words.empty() ? "" : " and ") +
               "no whole number from 0 to 255";
    }
    std::memcpy(place, &*byte, sizeof *byte);
    return "";
}

std::string put_number(const field& /*field*/, const std::string& value, char* place) {
    const auto number = number_from<std::int32_t>(value);
    if (!number)
        return '"' + value + "\" is no whole number of 32 bits";
    std::memcpy(place, &*number, sizeof *number);
    return "";
}

std::string put_text(const field& field, const std::string& value, char* place) {
    if (value.size() > field.most) // not quoted: it may be a passphrase
        return "is longer than " + std::to_string(field.most) + " bytes";
    if (field.kind == form::bssid && !is_bssid(value))
        return '"' + value + "\" is no BSSID like 00:11:22:aa:bb:cc";
    if (field.kind == form::ipv4 && !is_ipv4(value))
        return '"' + value + "\" is no IPv4 address like 192.168.1.1";
    value.copy(place, field.most);
    return "";
}

} // namespace

void store::read_section(const config_file& file, const section& section, need need, void* record) {
    for (const field& field : section.fields) {
        const config_entry* entry = file.find(section.name, field.key);
        if (entry == nullptr && field.fallback == nullptr) {
            if (need == need::whole_section)
                file.reject(entry, section.name, field.key, "is missing");
            continue;
        }
        const auto value = entry != nullptr ? decode_value(entry->value) : field.fallback;
        if (!value) {
            file.reject(entry, section.name, field.key,
                        R"(is no text in quotes with only \" \\ \n and \xHH as escapes)");
        }
        char* place = static_cast<char*>(record) + field.offset;
        const auto put = field.kind == form::byte     ? put_byte
                         : field.kind == form::number ? put_number
                                                      : put_text;
        const std::string problem = put(field, *value, place);
        if (!problem.empty())
            file.reject(entry, section.name, field.key, problem);
    }
}

std::string store::text_of_field(const field& field, const void* record) {
    const char* place = static_cast<const char*>(record) + field.offset;
    if (field.kind == form::number) {
        std::int32_t number = 0;
        std::memcpy(&number, place, sizeof number);
        return std::to_string(number);
    }
    if (field.kind == form::byte) {
        const auto byte = static_cast<unsigned char>(*place);
        for (const word& word : field.words) {
            if (word.value == byte)
                return word.name;
        }
        return std::to_string(byte);
    }
    return {place, ::strnlen(place, field.most + 1)};
}
