// SPDX-License-Identifier: MIT
// The interposed functions that start programs: one that the library cannot be preloaded into is
// not started.

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <alloca.h>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

#include "vcamera/interpose/interposer.h"
#include "vcamera/interpose/preload.h"
#include "vcamera/interpose/program_file.h"

namespace {

/// @return libvcamera.so by the path by which the loader found it.
const char* library() {
    static const char here = 0;
    Dl_info about{};
    return dladdr(&here, &about) != 0 ? about.dli_fname : "";
}

/// @param path the program for who wants to know how it is linked
/// @param start gets the environment; gives 0 or an errno
/// @return 0 or an errno
template <typename Function>
int start_program(const char* path, char* const* environment, const Function& start) {
    program_file file;
    examine_program(path, file);
    if (file.obstacle == nullptr && !can_preload(library()))
        file.obstacle = "cannot have libvcamera.so preloaded from a path with a blank or a colon";
    if (file.obstacle != nullptr) {
        print_obstacle(path, file);
        return EPERM; // and not ENOEXEC, for which shells would read the file as a script
    }
    return file.error != 0 ? file.error
                           : with_preload(library(), scratch_folder(), environment, start);
}

int fail(int error) {
    errno = error;
    return -1;
}

/// To be called right before exec. A child of vfork() is on its parent's stack and never leaves
/// these frames, so that the address sanitizer would go on watching their borders in the parent.
void forget_frames() {
#ifdef __SANITIZE_ADDRESS__
    __asan_handle_no_return();
#endif
}

/// What an exec function starts when the kernel says that it is no program.
int exec_shell(const char* path, char* const* words, char* const* environment) {
    std::size_t count = 0;
    while (words[count] != nullptr) // NOLINT(clang-analyzer-core.*): it does not know alloca()
        ++count;
    static char shell[] = "/bin/sh";
    auto** command = static_cast<char**>(alloca((count + 3) * sizeof(char*)));
    command[0] = shell;
    command[1] = const_cast<char*>(path);
    std::copy(words + std::min<std::size_t>(count, 1), words + count + 1, command + 2);
    return execve(shell, command, environment);
}

/// Starts a program with the words of execl() and its kind, from `first` up to the null pointer.
/// @param start gets the words, and the arguments that follow them
template <typename Function>
int with_words(const char* first, va_list rest, const Function& start) {
    va_list counted;
    va_copy(counted, rest);
    std::size_t count = 1;
    for (const char* word = first; word != nullptr; word = va_arg(counted, const char*))
        ++count;
    va_end(counted);
    auto** words = static_cast<char**>(alloca(count * sizeof(char*)));
    words[0] = const_cast<char*>(first);
    for (std::size_t i = 1; i < count; ++i)
        words[i] = va_arg(rest, char*);
    return start(words, rest);
}

/// Where the kernel finds a program that is named by a descriptor, or from one.
struct descriptor_path {
    char text[PATH_MAX];

    descriptor_path(int fd, const char* path) {
        if (*path == '/' || (fd == AT_FDCWD && *path != '\0')) {
            std::snprintf(text, sizeof text, "%s", path);
        } else {
            std::snprintf(text, sizeof text, "/proc/self/fd/%d/%s", fd, path);
            if (*path == '\0')
                *std::strrchr(text, '/') = '\0';
        }
    }
};

} // namespace

INTERPOSE int execve(const char* path, char* const argv[], char* const envp[]) noexcept {
    if (!on_camera())
        return NEXT(execve)(path, argv, envp);
    return fail(start_program(path, envp, [&](char* const* environment) {
        forget_frames();
        NEXT(execve)(path, argv, environment);
        return errno;
    }));
}

INTERPOSE int fexecve(int fd, char* const argv[], char* const envp[]) noexcept {
    if (!on_camera())
        return NEXT(fexecve)(fd, argv, envp);
    return fail(start_program(descriptor_path(fd, "").text, envp, [&](char* const* environment) {
        forget_frames();
        NEXT(fexecve)(fd, argv, environment);
        return errno;
    }));
}

INTERPOSE int execveat(int fd, const char* path, char* const argv[], char* const envp[],
                       int flags) noexcept {
    if (!on_camera())
        return NEXT(execveat)(fd, path, argv, envp, flags);
    return fail(start_program(descriptor_path(fd, path).text, envp, [&](char* const* environment) {
        forget_frames();
        NEXT(execveat)(fd, path, argv, environment, flags);
        return errno;
    }));
}

INTERPOSE int execvpe(const char* file, char* const argv[], char* const envp[]) noexcept {
    if (!on_camera())
        return NEXT(execvpe)(file, argv, envp);
    char path[PATH_MAX];
    if (!find_program(file, path))
        return -1;
    execve(path, argv, envp);
    return errno == ENOEXEC ? exec_shell(path, argv, envp) : -1;
}

INTERPOSE int execv(const char* path, char* const argv[]) noexcept {
    return execve(path, argv, environ);
}

INTERPOSE int execvp(const char* file, char* const argv[]) noexcept {
    return execvpe(file, argv, environ);
}

INTERPOSE int execl(const char* path, const char* arg, ...) noexcept {
    va_list rest;
    va_start(rest, arg);
    const int result =
        with_words(arg, rest, [&](char** words, auto&) { return execve(path, words, environ); });
    va_end(rest);
    return result;
}

INTERPOSE int execlp(const char* file, const char* arg, ...) noexcept {
    va_list rest;
    va_start(rest, arg);
    const int result =
        with_words(arg, rest, [&](char** words, auto&) { return execvpe(file, words, environ); });
    va_end(rest);
    return result;
}

INTERPOSE int execle(const char* path, const char* arg, ...) noexcept {
    va_list rest;
    va_start(rest, arg);
    const int result = with_words(arg, rest, [&](char** words, auto& environment) {
        return execve(path, words, va_arg(environment, char**));
    });
    va_end(rest);
    return result;
}

INTERPOSE int posix_spawn(pid_t* pid, const char* path,
                          const posix_spawn_file_actions_t* file_actions,
                          const posix_spawnattr_t* attrp, char* const argv[], char* const envp[]) {
    if (!on_camera())
        return NEXT(posix_spawn)(pid, path, file_actions, attrp, argv, envp);
    return start_program(path, envp, [&](char* const* environment) {
        return NEXT(posix_spawn)(pid, path, file_actions, attrp, argv, environment);
    });
}

INTERPOSE int posix_spawnp(pid_t* pid, const char* file,
                           const posix_spawn_file_actions_t* file_actions,
                           const posix_spawnattr_t* attrp, char* const argv[], char* const envp[]) {
    if (!on_camera())
        return NEXT(posix_spawnp)(pid, file, file_actions, attrp, argv, envp);
    char path[PATH_MAX];
    return find_program(file, path) ? posix_spawn(pid, path, file_actions, attrp, argv, envp)
                                    : errno;
}
