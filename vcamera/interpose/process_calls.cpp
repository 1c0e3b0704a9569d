// SPDX-License-Identifier: MIT
// The interposed functions of programs and processes.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

#include "vcamera/interpose/intercepted_call.h"
#include "vcamera/interpose/interposer.h"
#include "vcamera/model/daemons.h"
#include "vcamera/model/programs.h"

namespace {

/// Streams that popen() gave out, with the status that pclose() is to give.
struct {
    FILE* stream;
    int status;
} pipes[8];

FILE* memory_stream(const std::string& text) {
    const int file = memfd_create("popen", MFD_CLOEXEC);
    if (file < 0)
        return nullptr;
    if (write(file, text.data(), text.size()) < 0 || lseek(file, 0, SEEK_SET) < 0) {
        close(file);
        return nullptr;
    }
    return fdopen(file, "r");
}

int open_pipe(const std::string& text, int status, FILE*& stream) {
    for (auto& pipe : pipes) {
        if (pipe.stream != nullptr)
            continue;
        pipe = {memory_stream(text), status};
        stream = pipe.stream;
        return stream == nullptr ? -errno : status;
    }
    return -EMFILE;
}

std::string program_name(const char* command) {
    const words line = split(command);
    return line.empty() ? "-" : line[0];
}

void print(int file, const std::string& text) {
    if (!text.empty() && write(file, text.data(), text.size()) < 0)
        std::perror("vcamera: write");
}

bool in_own_group(pid_t pid) {
    return pid > 0 && pid < first_daemon_pid && getpgid(pid) == getpgrp();
}

/// Only daemons of the camera, and processes of the program's own group, can be meant by a number;
/// whatever else a pid file holds is nobody.
int signal_on_camera(pid_t pid, int signal) {
    return intercept(
        {"kill", std::to_string(pid), "kill", std::to_string(signal)},
        [&](camera_state& state) { return pid > 0 ? signal_daemon(state, pid, signal) : -ESRCH; });
}

} // namespace

INTERPOSE int system(const char* command) {
    if (!on_camera() || command == nullptr)
        return NEXT(system)(command);
    program_output output;
    const int status = intercept({"system", program_name(command), "system", command},
                                 [&](camera_state& s) { return run_command(s, command, output); });
    print(STDOUT_FILENO, output.out);
    print(STDERR_FILENO, output.err);
    return status;
}

INTERPOSE FILE* popen(const char* command, const char* modes) {
    if (!on_camera())
        return NEXT(popen)(command, modes);
    FILE* stream = nullptr;
    program_output output;
    intercept({"popen", program_name(command), "popen", command}, [&](camera_state& state) {
        if (modes[0] != 'r')
            return -EINVAL; // no program of the camera is fed
        const int status = run_command(state, command, output);
        return open_pipe(output.out, status, stream);
    });
    print(STDERR_FILENO, output.err);
    return stream;
}

INTERPOSE int pclose(FILE* stream) {
    for (auto& pipe : pipes) {
        if (pipe.stream != stream)
            continue;
        pipe.stream = nullptr;
        fclose(stream);
        return pipe.status;
    }
    return NEXT(pclose)(stream);
}

INTERPOSE int kill(pid_t pid, int sig) noexcept {
    return on_camera() && !in_own_group(pid) ? signal_on_camera(pid, sig) : NEXT(kill)(pid, sig);
}

INTERPOSE int killpg(pid_t pgrp, int sig) noexcept {
    return on_camera() ? signal_on_camera(-pgrp, sig) : NEXT(killpg)(pgrp, sig);
}

INTERPOSE int sigqueue(pid_t pid, int sig, const sigval val) noexcept {
    return on_camera() && !in_own_group(pid) ? signal_on_camera(pid, sig)
                                             : NEXT(sigqueue)(pid, sig, val);
}

INTERPOSE int tgkill(pid_t tgid, pid_t tid, int signal) {
    return on_camera() && !in_own_group(tgid) ? signal_on_camera(tgid, signal)
                                              : NEXT(tgkill)(tgid, tid, signal);
}

INTERPOSE int pidfd_open(pid_t pid, unsigned flags) noexcept {
    if (!on_camera() || in_own_group(pid))
        return NEXT(pidfd_open)(pid, flags);
    errno = ESRCH;
    return -1;
}
