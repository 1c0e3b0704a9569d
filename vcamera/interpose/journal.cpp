// SPDX-License-Identifier: MIT
// The journal of intercepted calls.

#include "vcamera/interpose/journal.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "src/base/unique_fd.h"

namespace {

/// As in C, so that no text can break a line or a column.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        char code[5] = {c};
        if (c == '\n') {
            std::strcpy(code, "\\n");
        } else if (c == '\t') {
            std::strcpy(code, "\\t");
        } else if (c == '\\') {
            std::strcpy(code, "\\\\");
        } else if (std::iscntrl(static_cast<unsigned char>(c)) != 0) {
            std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned char>(c));
        }
        result += code;
    }
    return result;
}

std::string answer_text(const intercepted_call& call, int answer) {
    if (answer < 0)
        return strerrorname_np(-answer);
    if (call.request == "system" || call.request == "popen")
        return std::to_string(WEXITSTATUS(answer));
    return "ok";
}

} // namespace

void write_journal(std::int64_t microseconds, const intercepted_call& call, int answer) {
    const std::string line = std::to_string(microseconds / 1000) + '\t' + escaped(call.subject) +
                             '\t' + call.request + '\t' + escaped(call.text) + '\t' + call.length +
                             '\t' + answer_text(call, answer) + '\n';
    const libwlan::unique_fd file(
        open(in_scratch("/journal").c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
    if (!file || write(file.get(), line.data(), line.size()) < 0)
        std::perror("vcamera: journal");
}
