// SPDX-License-Identifier: MIT
// What the library and the programs that it runs print, kept apart from what wlanctl says.

#include "diagnostics.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t most_kept = 8192;

FILE* answer_stream = nullptr;
FILE* message_stream = nullptr;
int read_end = -1;
bool passed_on = false;
std::string kept;

/// @return the stream of the same file, not passed on to any program; null when it is closed.
FILE* keep(int stream) {
    const int copy = fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    return copy < 0 ? nullptr : fdopen(copy, "w");
}

void set_up(int descriptor, int flag) {
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | flag);
}

/// @return the two ends, of which neither is one of the standard streams.
void open_pipe(int (&ends)[2]) {
    int low[2] = {-1, -1};
    if (pipe2(low, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "opening a pipe");
    for (int i = 0; i < 2; ++i) {
        ends[i] = fcntl(low[i], F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        close(low[i]);
        if (ends[i] < 0)
            throw std::system_error(errno, std::generic_category(), "opening a pipe");
    }
}

} // namespace

void diagnostics::collect(bool verbose) {
    passed_on = verbose;
    answer_stream = keep(STDOUT_FILENO);
    message_stream = keep(STDERR_FILENO);
    if (fcntl(STDIN_FILENO, F_GETFD) < 0) // the caller closed it: it would be the next to be opened
        open("/dev/null", O_RDWR);
    if (message_stream == nullptr)
        message_stream = fopen("/dev/null", "we");
    int ends[2];
    open_pipe(ends);
    // What is printed faster than it is taken in is lost: nobody waits for it.
    set_up(ends[0], O_NONBLOCK);
    set_up(ends[1], O_NONBLOCK);
    read_end = ends[0];
    dup2(ends[1], STDOUT_FILENO);
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // messages in the order in which they were printed
}

FILE* diagnostics::answers() {
    return answer_stream;
}

FILE* diagnostics::messages() {
    return message_stream;
}

int diagnostics::descriptor() {
    return read_end;
}

void diagnostics::take_in() {
    std::fflush(stdout);
    char part[1024];
    for (;;) {
        const ssize_t count = read(read_end, part, sizeof part);
        if (count <= 0)
            break;
        const auto length = static_cast<std::size_t>(count);
        kept.append(part, length);
        if (passed_on)
            std::fwrite(part, 1, length, message_stream);
    }
    if (kept.size() > most_kept)
        kept.erase(0, kept.size() - most_kept);
    if (passed_on)
        std::fflush(message_stream);
}

const std::string& diagnostics::printed() {
    return kept;
}

void diagnostics::forget() {
    kept.clear();
}
