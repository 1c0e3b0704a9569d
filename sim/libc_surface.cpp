// The libc functions through which a program meets its camera. Each one asks whether the call is
// for the camera, and otherwise passes it on to the function that it stands in front of.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include "sim/clock.h"
#include "sim/crossing.h"
#include "sim/daemons.h"
#include "sim/network_requests.h"
#include "sim/paths.h"
#include "sim/programs.h"
#include "sim/surface.h"

namespace {

constexpr std::int64_t second = 1000000;

bool on_camera() {
    return scratch_folder() != nullptr;
}

bool on_camera(const char* path) {
    return on_camera() && path != nullptr && belongs_to_camera(path);
}

/// The console is a device: opening it empties nothing, and all that is written to it stays.
bool is_console(const char* path) {
    return std::strcmp(path, "/dev/console") == 0;
}

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

/// @return 0, or -1 with errno set.
int rest(const char* call, std::int64_t microseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%g s",
                  static_cast<double>(microseconds) / static_cast<double>(second));
    int speed = 0;
    const int result = cross({call, "-", call, text}, [&](camera_state& state) {
        speed = state.speed;
        if (speed == 0)
            state.clock_us += microseconds;
        return 0;
    });
    if (result != 0 || speed == 0)
        return result;
    const std::int64_t waited = microseconds / speed;
    const timespec duration = {static_cast<time_t>(waited / second),
                               static_cast<long>(waited % second * 1000)};
    return nanosleep(&duration, nullptr);
}

bool in_own_group(pid_t pid) {
    return pid > 0 && pid < first_daemon_pid && getpgid(pid) == getpgrp();
}

} // namespace

// Files -----------------------------------------------------------------------------------------

SURFACE int open(const char* file, int oflag, ...) {
    va_list arguments;
    va_start(arguments, oflag);
    const mode_t mode = (oflag & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (!on_camera(file))
        return NEXT(open)(file, oflag, mode);
    constexpr const char* modes[] = {"r", "w", "r+", ""};
    const int kept = is_console(file) ? (oflag & ~O_TRUNC) | O_APPEND : oflag;
    return cross({"open", file, "open", modes[oflag & O_ACCMODE]}, [&](camera_state&) {
        const int descriptor = NEXT(open)(in_scratch(file).c_str(), kept, mode);
        return descriptor < 0 ? -errno : descriptor;
    });
}

SURFACE FILE* fopen(const char* filename, const char* modes) {
    if (!on_camera(filename))
        return NEXT(fopen)(filename, modes);
    FILE* stream = nullptr;
    cross({"open", filename, "open", modes}, [&](camera_state&) {
        const char* kept = is_console(filename) && modes[0] == 'w' ? "a" : modes;
        stream = NEXT(fopen)(in_scratch(filename).c_str(), kept);
        return stream == nullptr ? -errno : 0;
    });
    return stream;
}

// No file of the camera is so large that the two would differ.
SURFACE int open64(const char* file, int oflag, ...) __attribute__((alias("open")));
SURFACE FILE* fopen64(const char* filename, const char* modes) __attribute__((alias("fopen")));

SURFACE int access(const char* name, int type) noexcept {
    if (!on_camera(name))
        return NEXT(access)(name, type);
    return cross({"access", name, "access", std::to_string(type)}, [&](camera_state&) {
        return NEXT(access)(in_scratch(name).c_str(), type) == 0 ? 0 : -errno;
    });
}

SURFACE int unlink(const char* name) noexcept {
    if (!on_camera(name))
        return NEXT(unlink)(name);
    return cross({"unlink", name, "unlink", ""}, [&](camera_state&) {
        return NEXT(unlink)(in_scratch(name).c_str()) == 0 ? 0 : -errno;
    });
}

// Network ---------------------------------------------------------------------------------------

SURFACE int socket(int domain, int type, int protocol) noexcept {
    if (!on_camera() || domain != AF_INET || type != SOCK_DGRAM)
        return NEXT(socket)(domain, type, protocol);
    return cross({"socket", "-", "socket", "AF_INET SOCK_DGRAM"}, [&](camera_state&) {
        const int descriptor = NEXT(socket)(domain, type, protocol);
        return descriptor < 0 ? -errno : descriptor;
    });
}

SURFACE int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    if (!on_camera() || !is_network_request(request))
        return NEXT(ioctl)(fd, request, argument);
    auto* data = static_cast<iwreq*>(argument);
    return cross(describe_request(request, data), [&](camera_state& state) {
        return fcntl(fd, F_GETFD) < 0 ? -EBADF : answer_request(state, request, data);
    });
}

// Programs and processes ------------------------------------------------------------------------

SURFACE int system(const char* command) {
    if (!on_camera() || command == nullptr)
        return NEXT(system)(command);
    program_output output;
    const int status = cross({"system", program_name(command), "system", command},
                             [&](camera_state& s) { return run_command(s, command, output); });
    print(STDOUT_FILENO, output.out);
    print(STDERR_FILENO, output.err);
    return status;
}

SURFACE FILE* popen(const char* command, const char* modes) {
    if (!on_camera())
        return NEXT(popen)(command, modes);
    FILE* stream = nullptr;
    program_output output;
    cross({"popen", program_name(command), "popen", command}, [&](camera_state& state) {
        if (modes[0] != 'r')
            return -EINVAL; // no program of the camera is fed
        const int status = run_command(state, command, output);
        return open_pipe(output.out, status, stream);
    });
    print(STDERR_FILENO, output.err);
    return stream;
}

SURFACE int pclose(FILE* stream) {
    for (auto& pipe : pipes) {
        if (pipe.stream != stream)
            continue;
        pipe.stream = nullptr;
        fclose(stream);
        return pipe.status;
    }
    return NEXT(pclose)(stream);
}

/// Only daemons of the camera, and processes of the program's own group, can be meant by a number;
/// whatever else a pid file holds is nobody.
SURFACE int kill(pid_t pid, int signal) noexcept {
    if (!on_camera() || in_own_group(pid))
        return NEXT(kill)(pid, signal);
    return cross(
        {"kill", std::to_string(pid), "kill", std::to_string(signal)},
        [&](camera_state& state) { return pid > 0 ? signal_daemon(state, pid, signal) : -ESRCH; });
}

// Time ------------------------------------------------------------------------------------------

SURFACE unsigned int sleep(unsigned int seconds) {
    if (!on_camera())
        return NEXT(sleep)(seconds);
    return rest("sleep", seconds * second) == 0 ? 0 : seconds;
}

SURFACE int usleep(useconds_t useconds) {
    return on_camera() ? rest("usleep", useconds) : NEXT(usleep)(useconds);
}

SURFACE int select(int nfds, fd_set* readfds, fd_set* writefds, fd_set* exceptfds,
                   timeval* timeout) {
    const bool only_waits = nfds == 0 && timeout != nullptr;
    if (!on_camera() || !only_waits)
        return NEXT(select)(nfds, readfds, writefds, exceptfds, timeout);
    const timeval wait = *timeout;
    *timeout = {}; // the kernel leaves there what was not waited
    return rest("select", wait.tv_sec * second + wait.tv_usec);
}

SURFACE int clock_gettime(clockid_t clock_id, timespec* tp) noexcept {
    if (!on_camera() || clock_id != CLOCK_MONOTONIC_RAW)
        return NEXT(clock_gettime)(clock_id, tp);
    const std::int64_t now = camera_time(*held_camera());
    *tp = {static_cast<time_t>(now / second), static_cast<long>(now % second * 1000)};
    return 0;
}
