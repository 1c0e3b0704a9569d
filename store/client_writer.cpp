// SPDX-License-Identifier: MIT
// Storing the network to join.

#include <filesystem>

#include "libwlan/store.h"
#include "store/atomic_file.h"
#include "store/failure.h"
#include "store/value_text.h"
#include "store/wireless_sections.h"

namespace {

using store::client_section;
using store::config_entry;
using store::config_file;
using store::field;
using store::need;

using text_lines = std::vector<std::string>;

std::string line_end_of(const text_lines& lines) {
    const bool dos = !lines.empty() && lines.front().find("\r\n") != std::string::npos;
    return dos ? "\r\n" : "\n";
}

/// The lines of a value: its first between `head` and `tail`, the others below.
std::string lines_of_value(const std::string& head, const std::string& text,
                           const std::string& tail, const std::string& line_end) {
    const store::value_lines value = store::encode_value(text);
    std::string lines = head + value.front() + tail;
    for (std::size_t i = 1; i < value.size(); ++i)
        lines.append("    ").append(value[i]).append(line_end);
    return lines;
}

/// Changes the value alone: the key's spelling and a comment behind the value stay.
void replace_value(text_lines& lines, const config_entry& entry, const std::string& text,
                   const std::string& line_end) {
    const std::string line = lines[entry.line];
    const std::string& old = entry.value.front();
    const std::size_t start = line.find(old, line.find_first_of("=:") + 1);
    const std::string head = line.substr(0, start) + (old.empty() ? " " : "");
    for (std::size_t i = 0; i < entry.value.size(); ++i)
        lines[entry.line + i].clear();
    lines[entry.line] = lines_of_value(head, text, line.substr(start + old.size()), line_end);
}

/// The last line of the client section, which is started at the file's end when there is none.
std::string& last_line_of_client(text_lines& lines, const config_file& file,
                                 const std::string& line_end) {
    const std::string header = std::string("[") + client_section.name + "]";
    std::size_t last = lines.size();
    for (std::size_t i = 0; i < lines.size(); ++i)
        last = lines[i].rfind(header, 0) == 0 ? i : last;
    for (const config_entry& entry : file.entries())
        last = entry.section == client_section.name ? entry.line + entry.value.size() - 1 : last;
    if (last == lines.size())
        lines.push_back((lines.empty() ? "" : line_end) + header + line_end);
    return lines[last];
}

std::string with_client(const config_file& file, const _wireless_setting& before,
                        const _wireless_setting& wanted) {
    text_lines lines = file.lines();
    const std::string line_end = line_end_of(lines);
    if (!lines.empty() && lines.back().back() != '\n')
        lines.back() += line_end;
    std::string added;
    for (const field& field : client_section.fields) {
        const std::string text = text_of_field(field, &wanted);
        const config_entry* entry = file.find(client_section.name, field.key);
        if (entry == nullptr) {
            added += lines_of_value(std::string(field.key) + " = ", text, line_end, line_end);
        } else if (text != text_of_field(field, &before)) {
            replace_value(lines, *entry, text, line_end);
        }
    }
    if (!added.empty())
        last_line_of_client(lines, file, line_end) += added;
    std::string whole;
    for (const std::string& line : lines)
        whole += line;
    return whole;
}

/// A symbolic link stays one: what it points to is the file that is replaced.
std::string real_path(const std::string& path) {
    std::error_code error;
    std::string real = std::filesystem::canonical(path, error);
    if (error)
        throw store::failure(path + ": cannot open: " + error.message());
    return real;
}

void store_client(const _wireless_setting& wanted, const std::string& path) {
    const store::write_lock lock(path);
    const config_file file = config_file::load(path);
    const auto before = read_wireless(file, need::what_is_there, need::what_is_there);

    const std::string text = with_client(file, before, wanted);
    const config_file unwritten(path + " (not written)", text);
    read_wireless(unwritten, need::what_is_there, need::whole_section); // or throw a failure
    store::replace_file(path, text);
}

} // namespace

// A file starts nothing, so there are no follow-up actions to run.
int cam_set_client(_wireless_setting* setting, _cam_actions* /*actions*/,
                   unsigned char /*first_flag*/, unsigned char /*second_flag*/) {
    return store::answer([&] {
        const std::string path = config_file::path();
        if (setting == nullptr)
            throw store::failure(path + ": no record to store was given");
        store_client(*setting, real_path(path));
    });
}
