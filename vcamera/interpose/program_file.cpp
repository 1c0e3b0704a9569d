// SPDX-License-Identifier: MIT
// Whether a program can be surrounded, by its file.

#include "vcamera/interpose/program_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "src/base/unique_fd.h"

using libwlan::unique_fd;

/// The ELF header of the object that this is compiled into; the linker knows where it is.
extern "C" const ElfW(Ehdr) __ehdr_start __attribute__((visibility("hidden")));

namespace {

constexpr int most_interpreters = 5; // so many #! lines does the kernel follow

constexpr char set_id[] =
    "is set-user-id or set-group-id, so that the loader ignores LD_PRELOAD; run a copy of it";
constexpr char capable[] =
    "has file capabilities, so that the loader ignores LD_PRELOAD; run a copy of it";
constexpr char foreign[] = "is built for another kind of machine than libvcamera.so";
constexpr char static_link[] =
    "is statically linked, so that nothing reads LD_PRELOAD; link it dynamically";
constexpr char other_loader[] = "has another loader than that of this machine's GNU C library";
constexpr char unreadable[] = "cannot be read, and could be statically linked";
constexpr char malformed[] = "is a damaged ELF file";

/// @return how many bytes there were.
std::size_t read_at(const unique_fd& file, std::size_t offset, void* bytes, std::size_t size) {
    const ssize_t count = pread(file.get(), bytes, size, static_cast<off_t>(offset));
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

/// Reads the interpreter from a file's first bytes as the kernel does.
/// @return whether they name one.
bool read_interpreter(const char* line, std::size_t length, char (&path)[PATH_MAX]) {
    const char* end = std::find(line, line + length, '\n');
    const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
    const char* begin = std::find_if_not(line + 2, end, is_blank);
    const char* behind = std::find_if(begin, end, [&](char c) { return is_blank(c) || c == '\0'; });
    *std::copy(begin, behind, path) = '\0';
    return begin != behind;
}

bool is_same_file(const char* one, const char* other) {
    struct stat first {};
    struct stat second {};
    return stat(one, &first) == 0 && stat(other, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

/// @param own the header of an object that is built as libvcamera.so is.
/// @return the obstacle that the headers show, or null.
const char* elf_obstacle(const unique_fd& file, const ElfW(Ehdr) & own) {
    ElfW(Ehdr) header{};
    if (read_at(file, 0, &header, sizeof header) < EI_NIDENT)
        return malformed;
    if (std::memcmp(header.e_ident, own.e_ident, EI_VERSION) != 0 ||
        header.e_machine != own.e_machine)
        return foreign;
    if (header.e_phentsize != sizeof(ElfW(Phdr)))
        return malformed;
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) part;
        if (read_at(file, header.e_phoff + i * sizeof part, &part, sizeof part) != sizeof part)
            return malformed;
        if (part.p_type != PT_INTERP)
            continue;
        char path[PATH_MAX] = "";
        if (part.p_filesz >= sizeof path ||
            read_at(file, part.p_offset, path, part.p_filesz) != part.p_filesz)
            return malformed;
        return is_same_file(path, loader()) ? nullptr : other_loader;
    }
    return static_link;
}

const char* obstacle_of(const unique_fd& file, mode_t mode) {
    constexpr mode_t group_bits = S_ISGID | S_IXGRP; // the first without the second sets no group
    if ((mode & S_ISUID) != 0 || (mode & group_bits) == group_bits)
        return set_id;
    if (fgetxattr(file.get(), "security.capability", nullptr, 0) > 0)
        return capable;
    return elf_obstacle(file, __ehdr_start);
}

} // namespace

void examine_program(const char* path, program_file& result) {
    result = {};
    std::snprintf(result.path, sizeof result.path, "%s", path);
    for (int followed = 0; followed <= most_interpreters; ++followed) {
        if (access(result.path, X_OK) != 0) {
            result.error = errno;
            return;
        }
        const unique_fd file(open(result.path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        if (!file) {
            result.obstacle = unreadable;
            return;
        }
        struct stat about {};
        if (fstat(file.get(), &about) != 0 || !S_ISREG(about.st_mode)) {
            result.error = EACCES;
            return;
        }
        char first[256] = ""; // as much as the kernel looks at
        const std::size_t length = read_at(file, 0, first, sizeof first);
        if (std::memcmp(first, ELFMAG, SELFMAG) == 0) {
            result.obstacle = obstacle_of(file, about.st_mode);
            return;
        }
        result.is_interpreter = true;
        if (std::memcmp(first, "#!", 2) != 0 || !read_interpreter(first, length, result.path)) {
            result.error = ENOEXEC;
            return;
        }
    }
    result.error = ELOOP;
}

bool find_program(const char* name, char (&path)[PATH_MAX]) {
    errno = ENOENT;
    if (*name == '\0')
        return false;
    if (std::strchr(name, '/') != nullptr)
        return std::snprintf(path, sizeof path, "%s", name) < PATH_MAX;
    const char* folders = std::getenv("PATH");
    int error = ENOENT;
    for (const char* at = folders != nullptr ? folders : "/bin:/usr/bin";; ++at) {
        const int length = static_cast<int>(std::strcspn(at, ":"));
        const char* folder = length == 0 ? "." : at;
        std::snprintf(path, sizeof path, "%.*s/%s", std::max(length, 1), folder, name);
        struct stat about {};
        if (stat(path, &about) == 0 && S_ISREG(about.st_mode)) {
            if (access(path, X_OK) == 0)
                return true;
            error = EACCES; // unless a later folder has it
        }
        at += length;
        if (*at == '\0')
            break;
    }
    errno = error;
    return false;
}

void print_obstacle(const char* name, const program_file& file) {
    dprintf(STDERR_FILENO, "vcamera: cannot run %s: %s%s %s\n", name,
            file.is_interpreter ? "its interpreter " : "it", file.is_interpreter ? file.path : "",
            file.obstacle);
}

const char* loader() {
    Dl_info about{};
    // The kernel gives the start of the loader's memory as a number.
    const auto* start =
        reinterpret_cast<const void*>(getauxval(AT_BASE)); // NOLINT(performance-no-int-to-ptr)
    return dladdr(start, &about) != 0 ? about.dli_fname : "";
}
