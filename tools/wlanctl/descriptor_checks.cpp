// SPDX-License-Identifier: MIT
// Descriptors in use by the daemons, and by programs that hold the camera's library.

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include <dirent.h>
#include <unistd.h>

#include "daemon_checks.h"

namespace {

using folder = std::unique_ptr<DIR, int (*)(DIR*)>;

folder open_folder(const std::string& path) {
    return {opendir(path.c_str()), closedir};
}

/// @return how many entries a folder has, -1 when it cannot be read.
int count_entries(const std::string& path) {
    const folder entries = open_folder(path);
    if (entries == nullptr)
        return -1;
    int count = 0;
    while (const dirent* entry = readdir(entries.get()))
        count += entry->d_name[0] != '.' ? 1 : 0;
    return count;
}

/// @return how many descriptors a process may have, 0 when it is not told or unlimited.
int limit_of(const std::string& process) {
    constexpr char name[] = "Max open files";
    std::ifstream file(process + "/limits");
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, sizeof name - 1, name) == 0)
            return std::atoi(line.c_str() + sizeof name - 1);
    }
    return 0;
}

std::string name_of(const std::string& process) {
    std::ifstream file(process + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

bool holds_library(const std::string& process) {
    std::ifstream file(process + "/maps");
    for (std::string line; std::getline(file, line);) {
        if (line.find("/libwlan.so") != std::string::npos)
            return true;
    }
    return false;
}

bool concerns(const std::string& process, const std::string& name) {
    return name == "hostapd" || name == "wpa_supplicant" || name == "udhcpd" ||
           holds_library(process);
}

answer check(const std::string& what, int used, int limit) {
    constexpr int most_percent = 80;
    const bool few_left = limit > 0 && used >= limit * static_cast<long>(most_percent) / 100;
    return checked(what, std::to_string(used) + (limit > 0 ? " of " + std::to_string(limit) : ""),
                   few_left ? answer("it soon opens no file, socket or program any more: it leaves "
                                     "descriptors open")
                            : answer());
}

} // namespace

std::vector<answer> check_descriptors() {
    std::vector<answer> checks;
    const folder processes = open_folder("/proc");
    if (processes == nullptr)
        return checks;
    while (const dirent* entry = readdir(processes.get())) {
        const int pid = std::atoi(entry->d_name);
        if (pid <= 0 || pid == getpid())
            continue;
        const std::string process = std::string("/proc/") + entry->d_name;
        const std::string name = name_of(process);
        if (!concerns(process, name))
            continue;
        const int used = count_entries(process + "/fd");
        if (used >= 0) // it has not ended meanwhile
            checks.push_back(check("descriptors of " + name + ", process " + entry->d_name, used,
                                   limit_of(process)));
    }
    return checks;
}
