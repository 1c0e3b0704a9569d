// SPDX-License-Identifier: MIT
// Starts a program with libvcamera.so between it and libc, or not at all.

#include "vcamera/launcher/run_program.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "include/libwlan/version.h"
#include "src/base/unique_fd.h"
#include "vcamera/interpose/preload.h"
#include "vcamera/interpose/program_file.h"

namespace fs = std::filesystem;
using libwlan::unique_fd;

namespace {

/// Beside this program in the build tree, in the library folder when installed.
fs::path library_file() {
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
    const fs::path beside = folder / LIBRARY_NAME;
    return fs::exists(beside) ? beside : folder / LIBDIR_FROM_BINDIR / LIBRARY_NAME;
}

/// A folder of this user's with a plain name.
fs::path private_folder() {
    const std::string folder = "/tmp/vcamera-preload-" + std::to_string(getuid());
    mkdir(folder.c_str(), S_IRWXU);
    struct stat about {};
    const bool is_private = lstat(folder.c_str(), &about) == 0 && S_ISDIR(about.st_mode) &&
                            about.st_uid == getuid() && (about.st_mode & 022) == 0;
    if (!is_private)
        throw std::runtime_error(folder + ": is no folder that only this user can write to");
    return folder;
}

/// Puts a symbolic link in place of an earlier one.
fs::path make_link(const fs::path& link, const fs::path& target) {
    std::error_code ignored;
    if (fs::read_symlink(link, ignored) == target)
        return link;
    const fs::path made = link.string() + "." + std::to_string(getpid());
    fs::create_symlink(target, made);
    fs::rename(made, link);
    return link;
}

/// @return a path of the library that the loader takes as it is.
std::string path_to_preload(const fs::path& library, const std::string& scratch) {
    if (can_preload(library.c_str()))
        return library;
    if (can_preload(scratch.c_str()))
        return make_link(fs::path(scratch) / LIBRARY_NAME, library);
    // Shared by all cameras: the link's name tells one library from another.
    char name[64];
    std::snprintf(name, sizeof name, "%zx.so", std::hash<std::string>{}(library));
    return make_link(private_folder() / name, library);
}

/// Runs a function in a process of its own, since what it loads could crash.
/// @return its status as waitpid() gives it.
int run_in_child(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0)
        _exit(body());
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

/// @return whether the file is the library of this launcher; else it has said why not.
bool is_own_library(const std::string& library) {
    constexpr int has_said = 2;
    const auto say = [](const std::string& reason) {
        std::fprintf(stderr, "vcamera: cannot preload %s\n", reason.c_str());
        return has_said;
    };
    const int status = run_in_child([&] {
        void* object = dlopen(library.c_str(), RTLD_NOW);
        if (object == nullptr)
            return say(dlerror()); // which names the file
        const auto* version = static_cast<const char*>(dlsym(object, "vcamera_version"));
        if (version == nullptr || std::strcmp(version, LIBWLAN_VERSION) != 0)
            return say(library + ": is not the library of vcamera " LIBWLAN_VERSION);
        return 0;
    });
    if (status != 0 && !(WIFEXITED(status) && WEXITSTATUS(status) == has_said))
        say(library + ": is damaged");
    return status == 0;
}

/// @return the objects that the loader would load for a program; nothing of the program runs.
std::string list_objects(const char* program, const std::string& library,
                         const std::string& scratch) {
    const unique_fd list(memfd_create("list", MFD_CLOEXEC));
    run_in_child([&] {
        dup2(list.get(), STDOUT_FILENO);
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        with_preload(library.c_str(), scratch.c_str(), environ, [&](char* const* environment) {
            const char* const command[] = {loader(), "--list", program, nullptr};
            // execve() would refuse the loader when this process itself runs on a camera.
            return static_cast<int>(syscall(SYS_execve, loader(), command, environment));
        });
        return 127;
    });
    std::string text;
    char part[4096];
    off_t offset = 0;
    for (ssize_t size = 0; (size = pread(list.get(), part, sizeof part, offset)) > 0;
         offset += size)
        text.append(part, static_cast<std::size_t>(size));
    return text;
}

void print_error(const std::string& name, const program_file& file) {
    const std::string interpreter =
        file.is_interpreter ? std::string("its interpreter ") + file.path + ": " : "";
    std::fprintf(stderr, "vcamera: cannot run %s: %s%s\n", name.c_str(), interpreter.c_str(),
                 std::strerror(file.error));
}

} // namespace

void run_program(const std::vector<std::string>& program, const std::string& scratch) {
    std::vector<std::string> command = program;
    program_file file{};
    char path[PATH_MAX];
    if (!find_program(program[0].c_str(), path)) {
        file.error = errno;
        return print_error(program[0], file);
    }
    examine_program(path, file);
    if (file.error == ENOEXEC) { // execvp() has the shell read such a file
        command[0] = path;
        command.insert(command.begin(), "/bin/sh");
        std::strcpy(path, "/bin/sh");
        examine_program(path, file);
    }
    if (file.obstacle != nullptr)
        return print_obstacle(program[0].c_str(), file);
    if (file.error != 0)
        return print_error(program[0], file);

    const std::string library = path_to_preload(library_file(), scratch);
    if (!is_own_library(library))
        return;
    if (list_objects(file.path, library, scratch).find("\t" + library + " (") ==
        std::string::npos) {
        file.obstacle = "would run without libvcamera.so: its loader does not take it";
        return print_obstacle(program[0].c_str(), file);
    }
    std::vector<char*> words(command.size() + 1); // the last one stays null
    std::transform(command.begin(), command.end(), words.begin(),
                   [](std::string& word) { return word.data(); });
    with_preload(library.c_str(), scratch.c_str(), environ,
                 [&](char* const* environment) { return execve(path, words.data(), environment); });
    file.error = errno;
    print_error(program[0], file);
}
