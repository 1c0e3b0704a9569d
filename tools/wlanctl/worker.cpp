// SPDX-License-Identifier: MIT
// Requests of the library in a process of their own.

#include "worker.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/unique_fd.h"
#include "cancelling.h"
#include "diagnostics.h"

using libwlan::unique_fd;

namespace {

constexpr std::size_t most_written = 1U << 20;

/// Never returns. What is written at the end is the result.
void be_the_child(const std::function<int(int)>& work, int results) {
    setpgid(0, 0); // so that its programs end with it
    release_ending_signals();
    const std::int32_t result = work(results);
    std::fflush(nullptr);
    const bool told = write(results, &result, sizeof result) == sizeof result;
    _exit(told ? 0 : 1);
}

/// @return false at the end of what is written.
bool read_some(int descriptor, std::string& text) {
    char part[4096];
    const ssize_t count = read(descriptor, part, sizeof part);
    if (count > 0 && text.size() < most_written)
        text.append(part, static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

/// @return whether the child said all that it had to say before the command was asked to end.
bool listen(int results, std::string& text) {
    for (;;) {
        pollfd ends[] = {{results, POLLIN, 0},
                         {diagnostics::descriptor(), POLLIN, 0},
                         {ending_descriptor(), POLLIN, 0}};
        if (poll(ends, std::size(ends), -1) < 0 && errno != EINTR)
            return false;
        if (asked_to_end())
            return false;
        diagnostics::take_in();
        if (ends[0].revents != 0 && !read_some(results, text))
            return true;
    }
}

} // namespace

work_done run_in_child(const std::function<int(int)>& work) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "opening a pipe");
    const unique_fd results(ends[0]);
    unique_fd childs(ends[1]);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "starting a process");
    if (child == 0)
        be_the_child(work, childs.get());
    setpgid(child, child); // whichever of the two comes first
    close(childs.leave_open());
    work_done done = {false, -1, {}};
    const bool heard_out = listen(results.get(), done.wrote);
    if (!heard_out)
        kill(-child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    diagnostics::take_in();
    std::int32_t result = -1;
    if (heard_out && WIFEXITED(status) && done.wrote.size() >= sizeof result) {
        std::memcpy(&result, done.wrote.data() + done.wrote.size() - sizeof result, sizeof result);
        done.wrote.resize(done.wrote.size() - sizeof result);
        done.finished = true;
        done.result = result;
    }
    return done;
}
