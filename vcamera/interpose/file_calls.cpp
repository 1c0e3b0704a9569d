// SPDX-License-Identifier: MIT
// The interposed functions of files: those of the camera are answered from the scratch folder.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <glob.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/time.h>
#include <unistd.h>
#include <utime.h>

#include "vcamera/interpose/host_path.h"
#include "vcamera/interpose/intercepted_call.h"
#include "vcamera/interpose/interposer.h"
#include "vcamera/interpose/network_requests.h"

namespace {

/// The console is a device: opening it empties nothing, and all that is written to it stays.
bool is_console(const char* path) {
    return std::strcmp(path, "/dev/console") == 0;
}

int open_file(int folder, const char* file, int oflag, mode_t mode) {
    const host_path path(file, folder);
    const char* name = path.of_camera();
    if (name == nullptr)
        return NEXT(openat64)(folder, file, oflag, mode);
    constexpr const char* modes[] = {"r", "w", "r+", ""};
    const int kept = is_console(name) ? (oflag & ~O_TRUNC) | O_APPEND : oflag;
    return intercept({"open", name, "open", modes[oflag & O_ACCMODE]}, [&](camera_state& state) {
        show_figures(state, name);
        const int descriptor = NEXT(openat64)(folder, path, kept, mode);
        return descriptor < 0 ? -errno : descriptor;
    });
}

/// @param open gets the host's path and the mode
template <typename Function>
FILE* open_stream(const char* file, const char* modes, const Function& open) {
    const host_path path(file);
    const char* name = path.of_camera();
    if (name == nullptr)
        return open(file, modes);
    FILE* stream = nullptr;
    intercept({"open", name, "open", modes}, [&](camera_state& state) {
        show_figures(state, name);
        stream = open(path, is_console(name) && modes[0] == 'w' ? "a" : modes);
        return stream == nullptr ? -errno : 0;
    });
    return stream;
}

/// The mode that follows the flags of open().
mode_t mode_argument(int oflag, va_list arguments) {
    return (oflag & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

// Calls that the journal shows, and that faults strike ------------------------------------------

INTERPOSE int open(const char* file, int oflag, ...) {
    va_list arguments;
    va_start(arguments, oflag);
    const mode_t mode = mode_argument(oflag, arguments);
    va_end(arguments);
    return open_file(AT_FDCWD, file, oflag, mode);
}

INTERPOSE int openat(int fd, const char* file, int oflag, ...) {
    va_list arguments;
    va_start(arguments, oflag);
    const mode_t mode = mode_argument(oflag, arguments);
    va_end(arguments);
    return open_file(fd, file, oflag, mode);
}

INTERPOSE int creat(const char* file, mode_t mode) {
    return open_file(AT_FDCWD, file, O_WRONLY | O_CREAT | O_TRUNC, mode);
}

// What open() and openat() without a mode become in programs that are built with _FORTIFY_SOURCE.
INTERPOSE int __open_2(const char* file, int oflag) {
    return open_file(AT_FDCWD, file, oflag, 0);
}

INTERPOSE int __openat_2(int fd, const char* file, int oflag) {
    return open_file(fd, file, oflag, 0);
}

INTERPOSE FILE* fopen(const char* filename, const char* modes) {
    static const auto next = NEXT(fopen);
    return open_stream(filename, modes, next);
}

INTERPOSE FILE* freopen(const char* filename, const char* modes, FILE* stream) {
    return open_stream(filename, modes, [&](const char* path, const char* kept) {
        return NEXT(freopen)(path, kept, stream);
    });
}

// No file of the camera is so large that the two would differ.
INTERPOSE int open64(const char* file, int oflag, ...) __attribute__((alias("open")));
INTERPOSE int openat64(int fd, const char* file, int oflag, ...) __attribute__((alias("openat")));
INTERPOSE int creat64(const char* file, mode_t mode) __attribute__((alias("creat")));
INTERPOSE int __open64_2(const char* file, int oflag) __attribute__((alias("__open_2")));
INTERPOSE int __openat64_2(int fd, const char* file, int oflag)
    __attribute__((alias("__openat_2")));
INTERPOSE FILE* fopen64(const char* filename, const char* modes) __attribute__((alias("fopen")));
INTERPOSE FILE* freopen64(const char* filename, const char* modes, FILE* stream)
    __attribute__((alias("freopen")));

INTERPOSE int access(const char* name, int type) noexcept {
    const host_path path(name);
    if (path.of_camera() == nullptr)
        return NEXT(access)(name, type);
    return intercept({"access", path.of_camera(), "access", std::to_string(type)},
                     [&](camera_state&) { return NEXT(access)(path, type) == 0 ? 0 : -errno; });
}

INTERPOSE int unlink(const char* name) noexcept {
    const host_path path(name);
    if (path.of_camera() == nullptr)
        return NEXT(unlink)(name);
    return intercept({"unlink", path.of_camera(), "unlink", ""},
                     [&](camera_state&) { return NEXT(unlink)(path) == 0 ? 0 : -errno; });
}

// Calls that only find another file --------------------------------------------------------------

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): some of libc's are no words
#define REDIRECT(name, type, parameters, ...)                                                      \
    INTERPOSE type name parameters {                                                               \
        return NEXT(name)(__VA_ARGS__);                                                            \
    }

REDIRECT(faccessat, int, (int fd, const char* file, int type, int flag) noexcept, fd,
         host_path(file, fd), type, flag)
REDIRECT(eaccess, int, (const char* name, int type) noexcept, host_path(name), type)
REDIRECT(euidaccess, int, (const char* name, int type) noexcept, host_path(name), type)

REDIRECT(stat, int, (const char* file, struct stat* buf) noexcept, host_path(file), buf)
REDIRECT(stat64, int, (const char* file, struct stat64* buf) noexcept, host_path(file), buf)
REDIRECT(lstat, int, (const char* file, struct stat* buf) noexcept, host_path(file), buf)
REDIRECT(lstat64, int, (const char* file, struct stat64* buf) noexcept, host_path(file), buf)
REDIRECT(fstatat, int, (int fd, const char* file, struct stat* buf, int flag) noexcept, fd,
         host_path(file, fd), buf, flag)
REDIRECT(fstatat64, int, (int fd, const char* file, struct stat64* buf, int flag) noexcept, fd,
         host_path(file, fd), buf, flag)
REDIRECT(statx, int,
         (int fd, const char* file, int flags, unsigned mask, struct statx* buf) noexcept, fd,
         host_path(file, fd), flags, mask, buf)
REDIRECT(statfs, int, (const char* file, struct statfs* buf) noexcept, host_path(file), buf)
REDIRECT(statfs64, int, (const char* file, struct statfs64* buf) noexcept, host_path(file), buf)
REDIRECT(statvfs, int, (const char* file, struct statvfs* buf) noexcept, host_path(file), buf)
REDIRECT(statvfs64, int, (const char* file, struct statvfs64* buf) noexcept, host_path(file), buf)

REDIRECT(readlink, ssize_t, (const char* file, char* buf, size_t size) noexcept, host_path(file),
         buf, size)
REDIRECT(readlinkat, ssize_t, (int fd, const char* file, char* buf, size_t size) noexcept, fd,
         host_path(file, fd), buf, size)
REDIRECT(realpath, char*, (const char* name, char* resolved) noexcept, host_path(name), resolved)
REDIRECT(canonicalize_file_name, char*, (const char* name) noexcept, host_path(name))

REDIRECT(opendir, DIR*, (const char* name), host_path(name))
REDIRECT(scandir, int,
         (const char* folder, dirent*** list, int (*chooses)(const dirent*),
          int (*compare)(const dirent**, const dirent**)),
         host_path(folder), list, chooses, compare)
REDIRECT(scandir64, int,
         (const char* folder, dirent64*** list, int (*chooses)(const dirent64*),
          int (*compare)(const dirent64**, const dirent64**)),
         host_path(folder), list, chooses, compare)
REDIRECT(chdir, int, (const char* path) noexcept, host_path(path))
REDIRECT(inotify_add_watch, int, (int fd, const char* name, uint32_t mask) noexcept, fd,
         host_path(name), mask)

REDIRECT(remove, int, (const char* name) noexcept, host_path(name))
REDIRECT(unlinkat, int, (int fd, const char* name, int flag) noexcept, fd, host_path(name, fd),
         flag)
REDIRECT(rmdir, int, (const char* path) noexcept, host_path(path))
REDIRECT(mkdir, int, (const char* path, mode_t mode) noexcept, host_path(path), mode)
REDIRECT(mkdirat, int, (int fd, const char* path, mode_t mode) noexcept, fd, host_path(path, fd),
         mode)
REDIRECT(mkfifo, int, (const char* path, mode_t mode) noexcept, host_path(path), mode)
REDIRECT(mkfifoat, int, (int fd, const char* path, mode_t mode) noexcept, fd, host_path(path, fd),
         mode)
REDIRECT(mknod, int, (const char* path, mode_t mode, dev_t dev) noexcept, host_path(path), mode,
         dev)
REDIRECT(mknodat, int, (int fd, const char* path, mode_t mode, dev_t dev) noexcept, fd,
         host_path(path, fd), mode, dev)
REDIRECT(rename, int, (const char* from, const char* to) noexcept, host_path(from), host_path(to))
REDIRECT(renameat, int, (int from_fd, const char* from, int to_fd, const char* to) noexcept,
         from_fd, host_path(from, from_fd), to_fd, host_path(to, to_fd))
REDIRECT(renameat2, int,
         (int from_fd, const char* from, int to_fd, const char* to, unsigned flags) noexcept,
         from_fd, host_path(from, from_fd), to_fd, host_path(to, to_fd), flags)
REDIRECT(link, int, (const char* from, const char* to) noexcept, host_path(from), host_path(to))
REDIRECT(linkat, int,
         (int from_fd, const char* from, int to_fd, const char* to, int flags) noexcept, from_fd,
         host_path(from, from_fd), to_fd, host_path(to, to_fd), flags)
REDIRECT(symlink, int, (const char* from, const char* to) noexcept, host_path(from), host_path(to))
REDIRECT(symlinkat, int, (const char* from, int to_fd, const char* to) noexcept, host_path(from),
         to_fd, host_path(to, to_fd))
REDIRECT(chmod, int, (const char* file, mode_t mode) noexcept, host_path(file), mode)
REDIRECT(fchmodat, int, (int fd, const char* file, mode_t mode, int flag) noexcept, fd,
         host_path(file, fd), mode, flag)
REDIRECT(chown, int, (const char* file, uid_t owner, gid_t group) noexcept, host_path(file), owner,
         group)
REDIRECT(lchown, int, (const char* file, uid_t owner, gid_t group) noexcept, host_path(file), owner,
         group)
REDIRECT(fchownat, int, (int fd, const char* file, uid_t owner, gid_t group, int flag) noexcept, fd,
         host_path(file, fd), owner, group, flag)
REDIRECT(truncate, int, (const char* file, off_t length) noexcept, host_path(file), length)
REDIRECT(truncate64, int, (const char* file, off64_t length) noexcept, host_path(file), length)
REDIRECT(utime, int, (const char* file, const utimbuf* times) noexcept, host_path(file), times)
REDIRECT(utimes, int, (const char* file, const timeval times[2]) noexcept, host_path(file), times)
REDIRECT(lutimes, int, (const char* file, const timeval times[2]) noexcept, host_path(file), times)
REDIRECT(utimensat, int, (int fd, const char* file, const timespec times[2], int flags) noexcept,
         fd, host_path(file, fd), times, flags)

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

// What readlink(), readlinkat() and realpath() become with _FORTIFY_SOURCE.
INTERPOSE ssize_t __readlink_chk(const char* file, char* buf, size_t size,
                                 size_t /*room*/) noexcept {
    return readlink(file, buf, size);
}

INTERPOSE ssize_t __readlinkat_chk(int fd, const char* file, char* buf, size_t size,
                                   size_t /*room*/) noexcept {
    return readlinkat(fd, file, buf, size);
}

INTERPOSE char* __realpath_chk(const char* name, char* resolved, size_t /*room*/) noexcept {
    return realpath(name, resolved);
}

// What the stat() family is in programs that were built with a libc before 2.33.
INTERPOSE int __xstat(int /*version*/, const char* file, struct stat* buf) noexcept {
    return stat(file, buf);
}

INTERPOSE int __xstat64(int /*version*/, const char* file, struct stat64* buf) noexcept {
    return stat64(file, buf);
}

INTERPOSE int __lxstat(int /*version*/, const char* file, struct stat* buf) noexcept {
    return lstat(file, buf);
}

INTERPOSE int __lxstat64(int /*version*/, const char* file, struct stat64* buf) noexcept {
    return lstat64(file, buf);
}

INTERPOSE int __fxstatat(int /*version*/, int fd, const char* file, struct stat* buf,
                         int flag) noexcept {
    return fstatat(fd, file, buf, flag);
}

INTERPOSE int __fxstatat64(int /*version*/, int fd, const char* file, struct stat64* buf,
                           int flag) noexcept {
    return fstatat64(fd, file, buf, flag);
}

/// glob() reads folders by libc's own functions unless it is given others.
INTERPOSE int glob(const char* pattern, int flags, int (*errfunc)(const char*, int),
                   glob_t* pglob) noexcept {
    if (!on_camera() || (flags & GLOB_ALTDIRFUNC) != 0)
        return NEXT(glob)(pattern, flags, errfunc, pglob);
    pglob->gl_opendir = [](const char* name) -> void* { return opendir(name); };
    pglob->gl_readdir = [](void* folder) { return readdir(static_cast<DIR*>(folder)); };
    pglob->gl_closedir = [](void* folder) { closedir(static_cast<DIR*>(folder)); };
    pglob->gl_stat = stat;
    pglob->gl_lstat = lstat;
    return NEXT(glob)(pattern, flags | GLOB_ALTDIRFUNC, errfunc, pglob);
}
#if __WORDSIZE == 64
INTERPOSE int glob64(const char* pattern, int flags, int (*errfunc)(const char*, int),
                     glob64_t* pglob) noexcept __attribute__((alias("glob")));
#endif
