// SPDX-License-Identifier: MIT
// wpa_supplicant's configuration file.

#include "vcamera/model/wpa_supplicant_settings.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "vcamera/model/wpa_supplicant_keys.h"

namespace {

// Judges of wpa_supplicant's own.

template <std::size_t size>
const bounded_keys* find_bounds(const bounded_keys (&groups)[size], const std::string& key) {
    for (const bounded_keys& group : groups) {
        if (is_among(group.keys, key))
            return &group;
    }
    return nullptr;
}

refusal judge_number(const bounded_keys& bounds, const std::string& key, const std::string& value) {
    char* end = nullptr;
    const auto number = static_cast<int>(std::strtol(value.c_str(), &end, 0));
    if (*end != '\0')
        return "invalid number \"" + value + "\"";
    const std::string told = " " + key + " (value=" + std::to_string(number);
    if (bounds.low != 0 && number < bounds.low)
        return "too small" + told + " min_value=" + std::to_string(bounds.low) + ")";
    if (bounds.high != 0 && number > bounds.high)
        return "too large" + told + " max_value=" + std::to_string(bounds.high) + ")";
    return taken;
}

refusal judge_length(const bounded_keys& bounds, const std::string& key, std::size_t length) {
    const std::string told = " " + key + " (len=" + std::to_string(length);
    if (bounds.low != 0 && length < static_cast<std::size_t>(bounds.low))
        return "too short" + told + " min_len=" + std::to_string(bounds.low) + ")";
    if (bounds.high != 0 && length > static_cast<std::size_t>(bounds.high))
        return "too long" + told + " max_len=" + std::to_string(bounds.high) + ")";
    return taken;
}

/// The text of a network block: in quotes or as hexadecimal digits.
refusal judge_text(const bounded_keys& bounds, const std::string& key, const std::string& value) {
    constexpr std::string_view secrets =
        "sae_password private_key_passwd private_key2_passwd pin pin2 machine_private_key_passwd "
        "machine_pin";
    if (value == "NULL")
        return taken;
    const auto text = read_text_value(value);
    if (text)
        return judge_length(bounds, key, text->size());
    const std::string shown = is_among(secrets, key) ? "[KEY DATA REMOVED]" : value;
    return "failed to parse " + key + " '" + shown + "'.";
}

refusal country(const setting_rule& /*rule*/, const std::string& value) {
    return value.size() >= 2 ? taken : refusal("");
}

refusal bssid(const setting_rule& /*rule*/, const std::string& value) {
    const bool fits =
        value.empty() || value == "\"\"" || value == "any" || is_hardware_address(value);
    return fits ? taken : refusal("Invalid BSSID '" + value + "'.");
}

refusal psk(const setting_rule& /*rule*/, const std::string& value) {
    if (value.empty() || value[0] != '"') {
        const bool raw = value.size() == 64 && begins_with_octets(value, 32);
        return raw ? taken : refusal("Invalid PSK '" + value + "'.");
    }
    const std::string passphrase = value.substr(1, value.rfind('"') - 1);
    if (passphrase.size() < 8 || passphrase.size() > 63) {
        return "Invalid passphrase length " + std::to_string(passphrase.size()) +
               " (expected: 8..63) '" + value.substr(1) + "'.";
    }
    for (const char c : passphrase) {
        if (static_cast<unsigned char>(c) < 32 || c == 127)
            return "Invalid passphrase character";
    }
    return taken;
}

refusal pairwise(const setting_rule& rule, const std::string& value) {
    unsigned bits = 0;
    if (refusal wrong = read_ciphers(value, bits))
        return wrong;
    const bool group = rule.key == std::string("group");
    if (group) // WEP is left out without a word
        bits &= ~(cipher_wep40 | cipher_wep104);
    const unsigned allowed = cipher_ccmp | cipher_gcmp | cipher_tkip | cipher_gcmp_256 |
                             cipher_ccmp_256 | (group ? cipher_gtk_not_used : cipher_none);
    if ((bits & ~allowed) == 0)
        return taken;
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", bits);
    return std::string("not allowed ") + rule.key + " cipher (" + text + ").";
}

// clang-format off
constexpr setting_rule global_rules[] = {
    {"country", country},
    {"device_type", device_type},
    {"os_version", os_version},
    {"uuid", uuid},
};

constexpr setting_rule network_rules[] = {
    {"bssid", bssid},
    {"group", pairwise},
    {"pairwise", pairwise},
    {"psk", psk},
};

/// Lists of words, of which each unknown one is told.
constexpr struct {
    const char* key;
    std::string_view words;
} network_lists[] = {
    {"auth_alg", "OPEN SHARED LEAP"},
    {"key_mgmt", "WPA-PSK WPA-EAP IEEE8021X NONE WPA-NONE FT-PSK FT-EAP FT-EAP-SHA384 WPA-PSK-SHA256 "
                 "WPA-EAP-SHA256 WPS SAE FT-SAE OSEN WPA-EAP-SUITE-B WPA-EAP-SUITE-B-192 FILS-SHA256 "
                 "FILS-SHA384 FT-FILS-SHA256 FT-FILS-SHA384 OWE DPP"},
    {"proto", "WPA RSN WPA2 OSEN"},
};
// clang-format on

std::string trimmed(const std::string& text) {
    constexpr const char* blanks = " \t\r";
    const std::size_t start = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

/// The line without its comment, which pairs of quotes keep from being one, and without blanks.
std::string stripped(const std::string& line) {
    std::size_t comment = line.find('#');
    std::size_t quote = 0;
    while (comment != std::string::npos) {
        const std::size_t open = line.find('"', quote);
        if (open > comment)
            break;
        const std::size_t close = line.find('"', open + 1);
        if (close == std::string::npos)
            break;
        quote = close + 1;
        if (quote > comment)
            comment = line.find('#', quote);
    }
    return trimmed(line.substr(0, comment));
}

class settings_reader {
public:
    settings_reader(const std::string& text, supplicant_settings& settings)
        : lines_(text), settings_(settings) {}

    void read() {
        while (next()) {
            if (line_ == "network={") {
                read_network();
            } else if (line_ == "cred={" || line_.rfind("blob-base64-", 0) == 0) {
                skip_block();
            } else {
                read_global();
            }
        }
    }

private:
    /// @return whether there is another line with something in it.
    bool next() {
        for (std::string line; std::getline(lines_, line);) {
            ++number_;
            line_ = stripped(line);
            if (!line_.empty())
                return true;
        }
        return false;
    }

    void say(const std::string& text) {
        settings_.report.messages.push_back("Line " + std::to_string(number_) + ": " + text);
    }

    void read_global() {
        const std::size_t equals = line_.find('=');
        const std::string key = line_.substr(0, equals);
        const std::string value = equals == std::string::npos ? "" : line_.substr(equals + 1);
        if (equals == std::string::npos || !knows_global(key)) {
            say("unknown global field '" + line_ + "'.");
        } else if (const refusal wrong = judge_global(key, value)) {
            if (!wrong->empty())
                say(*wrong);
            say("failed to parse '" + line_ + "'.");
        } else {
            settings_.values[key] = value;
            return;
        }
        say("Invalid configuration line '" + line_ + "'.");
        ++settings_.report.errors;
    }

    static bool knows_global(const std::string& key) {
        return find_rule(global_rules, key) != nullptr ||
               find_bounds(global_numbers, key) != nullptr ||
               find_bounds(global_texts, key) != nullptr || is_unjudged_supplicant_key(key, false);
    }

    static refusal judge_global(const std::string& key, const std::string& value) {
        if (const setting_rule* rule = find_rule(global_rules, key))
            return rule->judge(*rule, value);
        if (const bounded_keys* bounds = find_bounds(global_numbers, key))
            return judge_number(*bounds, key, value);
        if (const bounded_keys* bounds = find_bounds(global_texts, key))
            return judge_length(*bounds, key, value.size());
        return taken;
    }

    void read_network() {
        std::map<std::string, std::string> network;
        bool good = true;
        while (next()) {
            if (line_ == "}") {
                finish_network(good, network);
                return;
            }
            good = read_network_line(network) && good;
        }
        say("network block was not terminated properly.");
        finish_network(false, network);
    }

    void finish_network(bool good, const std::map<std::string, std::string>& network) {
        if (good) {
            settings_.networks.push_back(network);
        } else {
            say("failed to parse network block.");
            ++settings_.report.errors;
        }
    }

    bool read_network_line(std::map<std::string, std::string>& network) {
        const std::size_t equals = line_.find('=');
        if (equals == std::string::npos) {
            say("Invalid SSID line '" + line_ + "'.");
            return false;
        }
        const std::string key = line_.substr(0, equals);
        const std::string value = line_.substr(equals + 1);
        if (value[0] == '"' && value.find('"', 1) == std::string::npos) {
            say("invalid quotation '" + value + "'.");
            return false;
        }
        if (!judge_network(key, value))
            return false;
        network[key] = value;
        return true;
    }

    bool judge_network(const std::string& key, const std::string& value) {
        bool good = true;
        if (const setting_rule* rule = find_rule(network_rules, key)) {
            good = accept(rule->judge(*rule, value));
        } else if (const bounded_keys* numbers = find_bounds(network_numbers, key)) {
            good = accept(judge_number(*numbers, key, value));
        } else if (const bounded_keys* texts = find_bounds(network_texts, key)) {
            good = accept(judge_text(*texts, key, value));
        } else if (const auto* words = find_words(key)) {
            good = judge_words(key, *words, value);
        } else if (!is_unjudged_supplicant_key(key, true)) {
            say("unknown network field '" + key + "'.");
            return false;
        }
        if (!good)
            say("failed to parse " + key + " '" + value + "'.");
        return good;
    }

    bool accept(const refusal& wrong) {
        if (wrong && !wrong->empty())
            say(*wrong);
        return !wrong;
    }

    static const std::string_view* find_words(const std::string& key) {
        for (const auto& list : network_lists) {
            if (key == list.key)
                return &list.words;
        }
        return nullptr;
    }

    bool judge_words(const std::string& key, std::string_view known, const std::string& value) {
        bool all = true;
        bool some = false;
        for (const std::string& word : split_words(value)) {
            const bool is_known = is_among(known, word);
            if (!is_known)
                say(std::string("invalid ").append(key).append(" '").append(word).append("'"));
            all = all && is_known;
            some = some || is_known;
        }
        if (!some)
            say("no " + key + " values configured.");
        return all && some;
    }

    void skip_block() {
        while (next() && line_ != "}") {
        }
    }

    std::istringstream lines_;
    supplicant_settings& settings_;
    std::string line_;
    int number_ = 0;
};

} // namespace

bool is_unjudged_supplicant_key(const std::string& key, bool in_network) {
    if (in_network)
        return is_among(unjudged_network_keys, key);
    return key.rfind("tx_queue_", 0) == 0 || key.rfind("wmm_ac_", 0) == 0 ||
           is_among(unjudged_global_keys, key);
}

supplicant_settings read_supplicant_settings(const std::string& text) {
    supplicant_settings settings;
    settings_reader(text, settings).read();
    return settings;
}
