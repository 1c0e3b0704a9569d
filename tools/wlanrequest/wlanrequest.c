// SPDX-License-Identifier: MIT
// Requests to the radio as wlanctl processes.

#define _GNU_SOURCE // pipe2, posix_spawn_file_actions_addclosefrom_np

#include "wlanrequest.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdbool.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

enum {
    longest_key = 4096, // what every pipe takes at once
    first_size = 1024,
    most_closed = 65536, // where the C library cannot close all at once
    reads_in_a_row = 16, // a process that floods lets the caller's loop go on
    patience_ms = 2000,
    pause_ms = 5,
};

struct wlan_request {
    pid_t process; // 0 once its exit status was collected
    int output;    // read end
    char* bytes;   // what was read: the line handed out, then what follows it
    size_t size;
    size_t length;   // of what was read
    size_t line_end; // one past the line handed out last
    bool skipping;   // the rest of a line that is too long
    bool ended;
    int error; // why it ended
};

// Descriptors
// ----------------------------------------------------------------------------------------------

static void close_kept(int descriptor) {
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    errno = error;
}

/// Moves a descriptor out of the places of the standard streams, which the caller may have closed.
static int above_standard(int descriptor) {
    if (descriptor < 0 || descriptor > STDERR_FILENO)
        return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close_kept(descriptor);
    return moved;
}

/// @return 0 or -1 with errno and both ends -1.
static int open_pipe(int ends[2]) {
    if (pipe2(ends, O_CLOEXEC) != 0) {
        ends[0] = ends[1] = -1;
        return -1;
    }
    ends[0] = above_standard(ends[0]);
    ends[1] = above_standard(ends[1]);
    if (ends[0] >= 0 && ends[1] >= 0)
        return 0;
    close_kept(ends[0]);
    close_kept(ends[1]);
    ends[0] = ends[1] = -1;
    return -1;
}

/// A pipe that holds the key and has no writer any more: writing it can neither block nor raise
/// SIGPIPE, since this process still has the read end.
/// @return the read end, or -1 with errno.
static int open_input(const char* key) {
    if (key == NULL)
        return above_standard(open("/dev/null", O_RDONLY | O_CLOEXEC));
    const size_t length = strlen(key);
    if (length > longest_key) {
        errno = EINVAL;
        return -1;
    }
    int ends[2];
    if (open_pipe(ends) != 0)
        return -1;
    const ssize_t written = length == 0 ? 0 : write(ends[1], key, length);
    close_kept(ends[1]);
    if (written == (ssize_t)length)
        return ends[0];
    close_kept(ends[0]);
    return -1;
}

// The process
// ----------------------------------------------------------------------------------------------

/// Closes all but the standard streams. Descriptors that the caller's threads open meanwhile are
/// among them, so that a list made here would not do.
static int add_close_others(posix_spawn_file_actions_t* actions) {
#if defined(__GLIBC_PREREQ) && !defined(WLAN_REQUEST_CLOSE_EACH)
#if __GLIBC_PREREQ(2, 34)
    return posix_spawn_file_actions_addclosefrom_np(actions, STDERR_FILENO + 1);
#define WLAN_REQUEST_CLOSES_ALL
#endif
#endif
#ifndef WLAN_REQUEST_CLOSES_ALL
    // Closing what is not open is no error to posix_spawn.
    const long allowed = sysconf(_SC_OPEN_MAX);
    const long limit = allowed < most_closed ? allowed : most_closed;
    for (int descriptor = STDERR_FILENO + 1; descriptor < limit; ++descriptor) {
        const int error = posix_spawn_file_actions_addclose(actions, descriptor);
        if (error != 0)
            return error;
    }
    return 0;
#endif
}

static int add_streams(posix_spawn_file_actions_t* actions, int input, int output) {
    int error = posix_spawn_file_actions_adddup2(actions, input, STDIN_FILENO);
    if (error == 0)
        error = posix_spawn_file_actions_adddup2(actions, output, STDOUT_FILENO);
    if (error == 0 && fcntl(STDERR_FILENO, F_GETFD) < 0) {
        error = posix_spawn_file_actions_addopen(actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    return error == 0 ? add_close_others(actions) : error;
}

static int set_attributes(posix_spawnattr_t* attributes) {
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigdelset(&all, SIGKILL);
    sigdelset(&all, SIGSTOP);
    sigemptyset(&none);
    int error = posix_spawnattr_setsigdefault(attributes, &all);
    if (error == 0)
        error = posix_spawnattr_setsigmask(attributes, &none);
    if (error == 0)
        error = posix_spawnattr_setpgroup(attributes, 0);
    if (error != 0)
        return error;
    return posix_spawnattr_setflags(attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                                    POSIX_SPAWN_SETPGROUP);
}

/// @return 0 or an errno value.
static int spawn(pid_t* process, char* const* argv, int input, int output) {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    int error = posix_spawn_file_actions_init(&actions);
    if (error != 0)
        return error;
    error = posix_spawnattr_init(&attributes);
    if (error == 0) {
        error = add_streams(&actions, input, output);
        if (error == 0)
            error = set_attributes(&attributes);
        if (error == 0) {
            const char* program = getenv("WLANCTL");
            error = posix_spawnp(process, program != NULL ? program : "wlanctl", &actions,
                                 &attributes, argv, environ);
        }
        posix_spawnattr_destroy(&attributes);
    }
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

/// @return an argument vector to be freed, whose texts are the caller's; or null with errno.
static char** vector_of(const char* const* arguments) {
    static const char* const leading[] = {"wlanctl", "--json", "--progress"};
    const size_t begin = sizeof leading / sizeof leading[0];
    size_t count = 0;
    while (arguments[count] != NULL)
        ++count;
    const char** argv = calloc(begin + count + 1, sizeof *argv);
    if (argv == NULL)
        return NULL;
    memcpy(argv, leading, sizeof leading);
    memcpy(argv + begin, arguments, count * sizeof *argv);
    return (char**)argv; // posix_spawn changes none of them
}

/// @return 0 or -1 with errno.
static int start_process(wlan_request* request, const char* const* arguments, const char* key) {
    char** argv = vector_of(arguments);
    if (argv == NULL)
        return -1;
    int error = -1;
    int output[2] = {-1, -1};
    const int input = open_input(key);
    if (input >= 0 && open_pipe(output) == 0 && fcntl(output[0], F_SETFL, O_NONBLOCK) == 0) {
        error = spawn(&request->process, argv, input, output[1]);
        if (error != 0)
            errno = error;
    }
    free(argv);
    close_kept(input);
    close_kept(output[1]);
    request->output = output[0];
    return error == 0 ? 0 : -1;
}

/// Collects the exit status, if the process has ended. A caller that ignores SIGCHLD or waits for
/// all its children has had it collected before.
static void collect(wlan_request* request, int options) {
    pid_t collected = 0;
    do {
        collected = waitpid(request->process, NULL, options);
    } while (collected < 0 && errno == EINTR);
    if (collected != 0)
        request->process = 0;
}

wlan_request* wlan_request_start(const char* const* arguments, const char* key) {
    wlan_request* request = calloc(1, sizeof *request);
    if (request == NULL)
        return NULL;
    request->output = -1;
    request->bytes = malloc(first_size);
    request->size = first_size;
    if (request->bytes == NULL || start_process(request, arguments, key) != 0) {
        const int error = errno;
        close_kept(request->output);
        free(request->bytes);
        free(request);
        errno = error;
        return NULL;
    }
    return request;
}

int wlan_request_fd(const wlan_request* request) {
    return request->output;
}

// Lines
// ----------------------------------------------------------------------------------------------

/// Finds the next line in what was read and ends it with a NUL.
/// @return null when there is none.
static const char* take_line(wlan_request* request) {
    for (;;) {
        char* const begin = request->bytes + request->line_end;
        char* const end = memchr(begin, '\n', request->length - request->line_end);
        if (end == NULL)
            return NULL;
        const bool left_out = request->skipping || memchr(begin, '\0', (size_t)(end - begin));
        request->skipping = false;
        request->line_end = (size_t)(end - request->bytes) + 1;
        if (!left_out) {
            *end = '\0';
            return begin;
        }
    }
}

/// Makes room behind what was read and is not yet a line.
/// @return false when there is no memory.
static bool make_room(wlan_request* request) {
    request->length -= request->line_end;
    memmove(request->bytes, request->bytes + request->line_end, request->length);
    request->line_end = 0;
    if (request->skipping || request->length > wlan_request_longest_line) {
        request->skipping = true;
        request->length = 0;
    }
    if (request->length < request->size)
        return true;
    char* const larger = realloc(request->bytes, request->size * 2);
    if (larger == NULL)
        return false;
    request->bytes = larger;
    request->size *= 2;
    return true;
}

static void end(wlan_request* request, int error) {
    request->ended = true;
    request->error = error;
}

/// @return whether anything was read.
static bool read_more(wlan_request* request) {
    if (!make_room(request)) {
        end(request, ENOMEM);
        return false;
    }
    const ssize_t count =
        read(request->output, request->bytes + request->length, request->size - request->length);
    if (count > 0) {
        request->length += (size_t)count;
        return true;
    }
    if (count == 0) {
        end(request, 0);
    } else if (errno != EAGAIN && errno != EINTR) {
        end(request, errno);
    }
    return false;
}

int wlan_request_next(wlan_request* request, const char** line) {
    for (int reads = 0;; ++reads) {
        *line = take_line(request);
        if (*line != NULL)
            return 1;
        if (request->ended) {
            errno = request->error;
            return -1;
        }
        if (reads == reads_in_a_row || (!read_more(request) && !request->ended))
            return 0;
    }
}

// The end
// ----------------------------------------------------------------------------------------------

/// Signals a process that is still this one's child: a number that was collected may be another's.
static int send_signal(wlan_request* request, int signal, bool to_group) {
    if (request->process != 0)
        collect(request, WNOHANG);
    if (request->process == 0)
        return 0;
    return kill(to_group ? -request->process : request->process, signal);
}

int wlan_request_cancel(wlan_request* request) {
    return send_signal(request, SIGTERM, false);
}

static long now_ms(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (long)now.tv_sec * 1000 + now.tv_nsec / 1000000;
}

/// Waits for the end of the process, and reads what it has still to say: a full pipe would keep it.
static void wait_for_end(wlan_request* request) {
    const long begin = now_ms();
    for (;;) {
        if (request->process != 0)
            collect(request, WNOHANG);
        if (request->process == 0 || now_ms() - begin >= patience_ms)
            return;
        struct pollfd output = {request->ended ? -1 : request->output, POLLIN, 0};
        const char* line = NULL;
        poll(&output, 1, pause_ms);
        wlan_request_next(request, &line);
    }
}

void wlan_request_free(wlan_request* request) {
    if (request == NULL)
        return;
    if (!request->ended)
        wlan_request_cancel(request);
    wait_for_end(request);
    if (request->process != 0 && send_signal(request, SIGKILL, true) == 0 && request->process != 0)
        collect(request, 0);
    close(request->output);
    free(request->bytes);
    free(request);
}
