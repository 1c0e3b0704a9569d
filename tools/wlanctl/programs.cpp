// SPDX-License-Identifier: MIT
// The programs of the camera's image.

#include "programs.h"

#include <cstdlib>
#include <sstream>

#include <unistd.h>

std::string find_program(const std::string& name, int access) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "/sbin:/usr/sbin:/bin:/usr/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string file = folder;
        file.append("/").append(name);
        if (::access(file.c_str(), access) == 0)
            return file;
    }
    return "";
}
