// SPDX-License-Identifier: MIT
// A program that makes one call of libc, as a program of a camera's image could:
//     probe CALL             prints "ok", the errno's name, or what was found
//     probe CALL PROCESS     signals a process
//     probe CALL PROGRAM...  starts a program, with an empty environment where the call takes one

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <glob.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

// NOLINTBEGIN(readability-identifier-naming): names of libc
extern "C" int __open_2(const char* file, int oflag);                      // open() with _FORTIFY_SOURCE
extern "C" int __xstat(int version, const char* file, struct stat* about); // stat() before glibc 2.33
// NOLINTEND(readability-identifier-naming)

namespace {

constexpr char state[] = "/sys/class/net/apclii0/operstate";
struct stat about;

int found(const void* what) {
    return what != nullptr ? 0 : -1;
}

int open_behind(const char* folder, const char* file) {
    return chdir(folder) == 0 ? open(file, O_RDONLY) : -1;
}

int match(const char* pattern) {
    glob_t matches{};
    const int result = glob(pattern, 0, nullptr, &matches);
    globfree(&matches);
    errno = ENOENT;
    return -result;
}

int open_socket(int domain, int type) {
    return socket(domain, type, 0);
}

int bind_to(const std::string& interface) {
    return setsockopt(open_socket(AF_INET, SOCK_DGRAM), SOL_SOCKET, SO_BINDTODEVICE, interface.c_str(),
                      static_cast<socklen_t>(interface.size()));
}

int request_flags(const std::string& interface) {
    ifreq request{};
    interface.copy(request.ifr_name, IFNAMSIZ);
    return ioctl(open_socket(AF_INET, SOCK_DGRAM), SIOCGIFFLAGS, &request);
}

int connect_to(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path);
    return connect(open_socket(AF_UNIX, SOCK_DGRAM), reinterpret_cast<sockaddr*>(&address), sizeof address);
}

int print_indexes() {
    struct if_nameindex* list = if_nameindex();
    for (struct if_nameindex* entry = list; entry->if_name != nullptr; ++entry)
        std::printf("%u %s, ", entry->if_index, entry->if_name);
    if_freenameindex(list);
    return 0;
}

int print_flags() {
    ifaddrs* list = nullptr;
    const int result = getifaddrs(&list);
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next)
        std::printf("%s %s, ", entry->ifa_name, (entry->ifa_flags & IFF_UP) != 0 ? "up" : "down");
    freeifaddrs(list);
    return result;
}

int print_name(unsigned index) {
    char name[IF_NAMESIZE];
    return if_indextoname(index, name) != nullptr ? std::printf("%s, ", name) : -1;
}

struct plain_call {
    const char* name;
    int (*run)();
};

constexpr plain_call plain_calls[] = {
    {"open", [] { return open(state, O_RDONLY); }},
    {"open64", [] { return open64(state, O_RDONLY); }},
    {"__open_2", [] { return __open_2(state, O_RDONLY); }},
    {"openat", [] { return openat(open("/sys/class", O_RDONLY), "net/apclii0/operstate", O_RDONLY); }},
    {"open/..", [] { return open("/sys/class/../class//net/./apclii0/operstate", O_RDONLY); }},
    {"open/relative", [] { return open_behind("/sys/class", "net/apclii0/operstate"); }},
    {"open/chdir", [] { return open_behind("/sys/class/net", "apclii0/operstate"); }},
    {"fopen", [] { return found(fopen(state, "r")); }},
    {"freopen", [] { return found(freopen(state, "r", stdin)); }},
    {"access", [] { return access(state, R_OK); }},
    {"faccessat", [] { return faccessat(AT_FDCWD, state, R_OK, 0); }},
    {"stat", [] { return stat(state, &about); }},
    {"lstat", [] { return lstat(state, &about); }},
    {"fstatat", [] { return fstatat(AT_FDCWD, state, &about, 0); }},
    {"__xstat", [] { return __xstat(1, state, &about); }},
    {"opendir", [] { return found(opendir("/sys/class/net/apclii0")); }},
    {"realpath", [] { return found(realpath(state, nullptr)); }},
    {"glob", [] { return match("/sys/class/*/apclii*"); }},
    {"socket/stream", [] { return open_socket(AF_INET, SOCK_STREAM); }},
    {"socket/netlink", [] { return open_socket(AF_NETLINK, SOCK_RAW); }},
    {"socket/packet", [] { return open_socket(AF_PACKET, SOCK_DGRAM); }},
    {"socket/raw", [] { return open_socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC); }},
    {"setsockopt/lo", [] { return bind_to("lo"); }},
    {"setsockopt/apclii0", [] { return bind_to("apclii0"); }},
    {"ioctl/lo", [] { return request_flags("lo"); }},
    {"ioctl/apclii0", [] { return request_flags("apclii0"); }},
    {"connect", [] { return connect_to("/run/wpa_supplicant/wlan0"); }},
    {"if_nameindex", print_indexes},
    {"getifaddrs", print_flags},
    {"if_nametoindex/lo", [] { return static_cast<int>(if_nametoindex("lo")) - 1; }},
    {"if_nametoindex/apclii0", [] { return static_cast<int>(if_nametoindex("apclii0")) - 1; }},
    {"if_indextoname", [] { return print_name(3); }},
};

struct signal_call {
    const char* name;
    int (*run)(pid_t pid);
};

constexpr signal_call signal_calls[] = {
    {"kill", [](pid_t pid) { return kill(pid, SIGKILL); }},
    {"killpg", [](pid_t pid) { return killpg(pid, SIGKILL); }},
    {"sigqueue", [](pid_t pid) { return sigqueue(pid, SIGKILL, {}); }},
    {"tgkill", [](pid_t pid) { return tgkill(pid, pid, SIGKILL); }},
};

char* no_environment[] = {nullptr};

/// What posix_spawn() answered, as exec would.
int spawned(int error, pid_t child) {
    if (error == 0)
        waitpid(child, nullptr, 0);
    errno = error;
    return error == 0 ? 0 : -1;
}

struct start_call {
    const char* name;
    int (*run)(char** command);
};

pid_t child;

constexpr start_call start_calls[] = {
    {"execve", [](char** command) { return execve(command[0], command, no_environment); }},
    {"execve/null", [](char** command) { return execve(command[0], command, nullptr); }},
    {"execveat", [](char** command) { return execveat(AT_FDCWD, command[0], command, no_environment, 0); }},
    {"execveat/empty",
     [](char** command) { return execveat(open(command[0], O_RDONLY), "", command, no_environment, AT_EMPTY_PATH); }},
    {"fexecve", [](char** command) { return fexecve(open(command[0], O_RDONLY), command, no_environment); }},
    {"execv", [](char** command) { return execv(command[0], command); }},
    {"execvp", [](char** command) { return execvp(command[0], command); }},
    {"execvpe", [](char** command) { return execvpe(command[0], command, no_environment); }},
    {"execl", [](char** command) { return execl(command[0], command[0], command[1], nullptr); }},
    {"execlp", [](char** command) { return execlp(command[0], command[0], command[1], nullptr); }},
    {"execle", [](char** command) { return execle(command[0], command[0], command[1], nullptr, no_environment); }},
    {"posix_spawn",
     [](char** command) {
         return spawned(posix_spawn(&child, command[0], nullptr, nullptr, command, no_environment), child);
     }},
    {"posix_spawnp",
     [](char** command) {
         return spawned(posix_spawnp(&child, command[0], nullptr, nullptr, command, no_environment), child);
     }},
};

template <typename Calls, typename... Arguments>
void run(const Calls& table, const std::string& name, Arguments... values) {
    for (const auto& call : table) {
        if (call.name == name)
            std::puts(call.run(values...) >= 0 ? "ok" : strerrorname_np(errno));
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::string name = argc > 1 ? argv[1] : "";
    run(plain_calls, name);
    if (argc > 2) {
        run(signal_calls, name, std::atoi(argv[2]));
        clearenv(); // what a program starts stays on the camera all the same
        run(start_calls, name, argv + 2);
    }
}
