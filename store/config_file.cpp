// SPDX-License-Identifier: MIT
// Reading the configuration file.

#include "store/config_file.h"

#include <algorithm>
#include <cstdlib>

#include <fcntl.h>
#include <ini.h>
#include <sys/stat.h>
#include <unistd.h>

#include "store/failure.h"

namespace {

constexpr std::size_t most_bytes = 64UL * 1024;
constexpr const char* blanks = " \t\r\n\v\f";

/// What inih's two callbacks share: lines are handed out one by one, so that the entry which comes
/// back between two of them has a line number.
struct ini_walk {
    const std::vector<std::string>& lines;
    std::vector<store::config_entry>& entries;
    std::size_t lines_read = 0;
    bool continued = false;
    bool too_long = false;
};

std::vector<std::string> cut_into_lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size(); start += lines.back().size()) {
        const std::size_t last = std::min(text.find('\n', start), text.size() - 1);
        lines.push_back(text.substr(start, last - start + 1));
    }
    return lines;
}

std::string without_blanks(const std::string& line) {
    const std::size_t start = line.find_first_not_of(blanks);
    return start == std::string::npos
               ? ""
               : line.substr(start, line.find_last_not_of(blanks) - start + 1);
}

/// Hands inih its next line. inih takes every indented line for the continuation of a value; here
/// only text in quotes is one, so that people may indent keys.
char* next_line(char* buffer, int size, void* context) {
    auto& walk = *static_cast<ini_walk*>(context);
    if (walk.lines_read == walk.lines.size())
        return nullptr;
    std::string line = without_blanks(walk.lines[walk.lines_read++]);
    walk.continued = !line.empty() && line.front() == '"';
    const bool comment = !line.empty() && (line.front() == '#' || line.front() == ';');
    const std::size_t room = static_cast<std::size_t>(size) - 3;
    if (line.size() > room && !comment) { // inih would go on with the rest as if it were a line
        walk.too_long = true;
        return nullptr;
    }
    line.insert(0, walk.continued ? 1 : 0, ' ');
    buffer[line.copy(buffer, room + 1)] = '\0';
    return buffer;
}

/// @return 1, or 0 for a line that inih shall count as an error.
int keep_entry(void* context, const char* section, const char* key, const char* value) {
    auto& walk = *static_cast<ini_walk*>(context);
    const std::size_t line = walk.lines_read - 1;
    if (!walk.continued) {
        walk.entries.push_back({section, key, {value}, line});
        return 1;
    }
    const auto last = walk.entries.rbegin();
    if (last == walk.entries.rend() || last->line + last->value.size() != line)
        return 0; // it goes on from nothing, or from further above
    last->value.emplace_back(value);
    return 1;
}

} // namespace

std::string store::config_file::path() {
    const char* path = std::getenv("CAMSTORE_FILE");
    return path != nullptr && *path != '\0' ? path : "/etc/camera.conf";
}

store::config_file store::config_file::load(const std::string& path) {
    // A pipe must not keep the camera waiting.
    const libwlan::unique_fd file = open_or_fail(path, O_RDONLY | O_NONBLOCK);
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        fail_with_errno(path, "read");
    if (!S_ISREG(status.st_mode))
        throw failure(path + ": is no regular file");
    std::string text(most_bytes + 1, '\0');
    std::size_t length = 0;
    ssize_t got = 1;
    while (got > 0 && length < text.size()) {
        got = ::read(file.get(), &text[length], text.size() - length);
        if (got < 0)
            fail_with_errno(path, "read");
        length += static_cast<std::size_t>(got);
    }
    text.resize(length);
    return {path, text};
}

store::config_file::config_file(std::string name, const std::string& text)
    : name_(std::move(name)), lines_(cut_into_lines(text)) {
    if (text.size() > most_bytes)
        throw failure(name_ + ": is longer than " + std::to_string(most_bytes) + " bytes");
    if (text.find('\0') != std::string::npos)
        throw failure(name_ + ": holds a NUL byte and is no text");
    ini_walk walk = {lines_, entries_};
    const int wrong_line = ::ini_parse_stream(next_line, &walk, keep_entry, &walk);
    if (wrong_line != 0) {
        throw failure(name_ + ":" + std::to_string(wrong_line) +
                      ": is no [section], no key = value and no comment");
    }
    if (walk.too_long)
        throw failure(name_ + ":" + std::to_string(walk.lines_read) + ": is too long for a line");
}

const store::config_entry* store::config_file::find(std::string_view section,
                                                    std::string_view key) const {
    const config_entry* found = nullptr;
    for (const config_entry& entry : entries_) {
        if (entry.section != section || entry.key != key)
            continue;
        if (found != nullptr) {
            reject(&entry, entry.section, entry.key,
                   "stands on line " + std::to_string(found->line + 1) + " already");
        }
        found = &entry;
    }
    return found;
}

void store::config_file::reject(const config_entry* entry, const std::string& section,
                                const std::string& key, const std::string& problem) const {
    const std::string line = entry != nullptr ? ":" + std::to_string(entry->line + 1) : "";
    throw failure(name_ + line + ": " + section + "." + key + ": " + problem);
}
