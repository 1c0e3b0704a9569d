// SPDX-License-Identifier: MIT
// udhcpd's configuration file.

#include "vcamera/model/udhcpd_settings.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <sstream>

#include <arpa/inet.h>
#include <netinet/ether.h>
#include <strings.h>

namespace {

bool is_address(const std::string& text) {
    in_addr address{};
    return inet_aton(text.c_str(), &address) != 0;
}

/// A number of 32 bits with nothing behind it.
bool is_number(const std::string& text, int base, bool with_sign = false) {
    const bool minus = with_sign && text[0] == '-';
    if (std::isalnum(static_cast<unsigned char>(text[minus ? 1 : 0])) == 0)
        return false;
    char* end = nullptr;
    errno = 0;
    const long long number = std::strtoll(text.c_str(), &end, base);
    return *end == '\0' && errno == 0 && number >= (with_sign ? INT_MIN : 0) &&
           number <= (with_sign ? INT_MAX : static_cast<long long>(UINT_MAX));
}

/// Octets of two hexadecimal digits, or of one before a colon or the end.
bool is_octets(const std::string& text) {
    const auto at = [&](std::size_t place) { return place < text.size() ? text[place] : '\0'; };
    const auto is_digit = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    for (std::size_t i = 0; i < text.size(); i += at(i) == ':' ? 1 : 0) {
        const char second = at(i + 1);
        if (!is_digit(at(i)) || !(is_digit(second) || second == ':' || second == '\0'))
            return false;
        i += 2;
    }
    return true;
}

/// What a keyword or an option takes. Lists take several; of these, a bad one is the last.
enum class value_form {
    text,
    address,
    addresses,
    number,
    signed_number,
    pairs,
    routes,
    option,
    lease,
    none
};

struct keyword {
    std::string_view name;
    value_form form;
    const char* unset = ""; // in place of a value that cannot be read
};

constexpr keyword keywords[] = {
    {"start", value_form::address, "192.168.0.20"},
    {"end", value_form::address, "192.168.0.254"},
    {"interface", value_form::text, "eth0"},
    {"max_leases", value_form::number, "235"},
    {"auto_time", value_form::number},
    {"decline_time", value_form::number},
    {"conflict_time", value_form::number},
    {"offer_time", value_form::number},
    {"min_lease", value_form::number},
    {"lease_file", value_form::text},
    {"pidfile", value_form::text},
    {"siaddr", value_form::address},
    {"option", value_form::option},
    {"opt", value_form::option},
    {"notify_file", value_form::text},
    {"sname", value_form::text},
    {"boot_file", value_form::text},
    {"static_lease", value_form::lease},
};

constexpr keyword options[] = {
    // clang-format off
    {"subnet", value_form::address},      {"timezone", value_form::signed_number}, {"router", value_form::addresses},
    {"dns", value_form::addresses},       {"lprsrv", value_form::addresses},       {"hostname", value_form::text},
    {"bootsize", value_form::number},     {"domain", value_form::text},            {"swapsrv", value_form::address},
    {"rootpath", value_form::text},       {"ipttl", value_form::number},           {"mtu", value_form::number},
    {"broadcast", value_form::address},   {"routes", value_form::pairs},           {"nisdomain", value_form::text},
    {"nissrv", value_form::addresses},    {"ntpsrv", value_form::addresses},       {"wins", value_form::addresses},
    {"lease", value_form::number},        {"serverid", value_form::address},       {"message", value_form::text},
    {"vendor", value_form::text},         {"tftp", value_form::text},              {"bootfile", value_form::text},
    {"tzstr", value_form::text},          {"tzdbstr", value_form::text},           {"search", value_form::text},
    {"sipsrv", value_form::none},         {"staticroutes", value_form::routes},    {"vlanid", value_form::number},
    {"vlanpriority", value_form::number}, {"pxeconffile", value_form::text},       {"pxepathprefix", value_form::text},
    {"reboottime", value_form::number},   {"ip6rd", value_form::none},             {"msstaticroutes", value_form::routes},
    {"wpad", value_form::text},
    // clang-format on
};

/// Cuts words off a value.
class words_of {
public:
    explicit words_of(std::string text) : text_(std::move(text)) {}

    /// @return the next word; empty at the end.
    std::string next(std::string_view between) {
        const std::size_t start = std::min(text_.find_first_not_of(between, place_), text_.size());
        const std::size_t end = std::min(text_.find_first_of(between, start), text_.size());
        place_ = std::min(end + 1, text_.size());
        return text_.substr(start, end - start);
    }

    [[nodiscard]] std::string rest() const {
        const std::size_t start = text_.find_first_not_of(" \t", place_);
        return start == std::string::npos ? "" : text_.substr(start);
    }

private:
    std::string text_;
    std::size_t place_ = 0;
};

constexpr std::string_view between_values = ", \t";
constexpr std::string_view between_halves = ", \t/-"; // of a pair or a route

class settings_reader {
public:
    settings_reader(udhcpd_settings& settings, std::string path)
        : settings_(settings), path_(std::move(path)) {
        for (const keyword& keyword : keywords) {
            if (*keyword.unset != '\0')
                settings_.values[std::string(keyword.name)] = keyword.unset;
        }
    }

    void read_line(std::string line) {
        ++number_;
        line.resize(std::min(line.find('#'), line.size()));
        words_of words(line);
        const std::string key = words.next(" \t");
        std::string value = words.rest();
        value.resize(value.find_last_not_of(" \t") + 1);
        if (value.empty()) {
            if (!key.empty() || line.find_first_not_of(" \t") != std::string::npos)
                say("bad line " + std::to_string(number_) + ": 1 tokens found, 2 needed");
            return;
        }
        for (const keyword& keyword : keywords) {
            if (strcasecmp(key.c_str(), keyword.name.data()) == 0) {
                read_value(keyword, value);
                return;
            }
        }
    }

    void check_pool() {
        in_addr start{};
        in_addr end{};
        inet_aton(settings_.values["start"].c_str(), &start);
        inet_aton(settings_.values["end"].c_str(), &end);
        if (ntohl(start.s_addr) > ntohl(end.s_addr))
            end_with("bad start/end IP range in " + path_);
    }

private:
    void say(const std::string& text) { settings_.messages.push_back(text); }

    bool end_with(const std::string& text) {
        say(text);
        settings_.ends = true;
        return false;
    }

    void read_value(const keyword& keyword, const std::string& value) {
        words_of words(value);
        const bool good =
            keyword.form == value_form::option
                ? read_option(words)
                : keyword.form == value_form::text ||
                      (keyword.form == value_form::number ? is_number(value, 10)
                                                          : read_one(keyword.form, words, value));
        if (settings_.ends)
            return;
        settings_.values[std::string(keyword.name)] = good ? value : keyword.unset;
        if (!good)
            say("can't parse line " + std::to_string(number_) + " in " + path_);
    }

    bool read_one(value_form form, words_of& words, const std::string& value) {
        return form == value_form::lease ? read_lease(words) : read_address(value);
    }

    /// A port may stand behind a colon.
    bool read_address(const std::string& text) {
        const std::size_t colon = text.find(':');
        const bool has_port = colon != std::string::npos && text.rfind(':') == colon;
        const std::string port = has_port ? text.substr(colon + 1) : "0";
        if (text.empty())
            return false;
        if (!is_number(port, 10) || std::strtoul(port.c_str(), nullptr, 10) > UINT16_MAX) {
            say("bad port '" + port + "'");
        } else if (is_address(has_port ? text.substr(0, colon) : text)) {
            return true;
        } else {
            say("bad address '" + text + "'");
        }
        return false;
    }

    bool read_lease(words_of& words) {
        ether_addr address{};
        const bool known = ether_aton_r(words.next(" \t").c_str(), &address) != nullptr;
        return known && read_address(words.next(" \t"));
    }

    bool read_option(words_of& words) {
        const std::string name = words.next(" \t=:");
        if (is_number(name, 0) && std::strtoul(name.c_str(), nullptr, 0) < 255)
            return read_octets(words.rest());
        std::string known;
        for (const keyword& option : options) {
            if (name == option.name)
                return read_values(option.form, words);
            known.append(" ").append(option.name);
        }
        return end_with("unknown option '" + name + "', known options:" + known);
    }

    /// The value of an option that is named by its number: hexadecimal, or a text in quotes.
    bool read_octets(const std::string& value) {
        if (value.empty())
            return false;
        const char quote = value[0];
        if ((quote == '"' || quote == '\'') && value.size() > 1 && value.back() == quote)
            return value.size() > 2;
        return is_octets(value) || end_with("malformed hex string '" + value + "'");
    }

    bool read_values(value_form form, words_of& words) {
        bool good = false;
        for (;;) {
            const std::string value = words.next(between_values);
            if (value.empty())
                return good;
            switch (form) {
            case value_form::address:
                return read_address(value);
            case value_form::number:
                return is_number(value, 0);
            case value_form::signed_number:
                return is_number(value, 0, true);
            case value_form::text:
                return true;
            case value_form::addresses:
                good = read_address(value);
                break;
            case value_form::pairs:
                good = read_pair(value, words);
                break;
            case value_form::routes:
                good = read_route(value, words);
                break;
            default:
                return false;
            }
            if (!good)
                return false;
        }
    }

    bool read_pair(const std::string& first, words_of& words) {
        const bool good = read_address(first);
        const std::string second = words.next(between_halves);
        return good && read_address(second);
    }

    /// "10.0.0.0/8 10.1.2.3"
    bool read_route(const std::string& value, words_of& words) {
        const std::size_t slash = value.find('/');
        if (slash == std::string::npos)
            return false;
        const bool good = read_address(value.substr(0, slash));
        const std::string bits = value.substr(slash + 1);
        const std::string router = words.next(between_halves);
        const bool fits = is_number(bits, 10) && std::strtoul(bits.c_str(), nullptr, 10) <= 32;
        return good && fits && read_address(router);
    }

    udhcpd_settings& settings_;
    std::string path_;
    int number_ = 0;
};

} // namespace

udhcpd_settings read_udhcpd_settings(const std::string& text, const std::string& path) {
    udhcpd_settings settings;
    settings_reader reader(settings, path);
    std::istringstream lines(text);
    for (std::string line; !settings.ends && std::getline(lines, line);)
        reader.read_line(line);
    if (!settings.ends)
        reader.check_pool();
    return settings;
}
