// SPDX-License-Identifier: MIT
// Small file functions that camera programs share.

#include "libwlan/files.h"

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

#include "base/unique_fd.h"

int exist(const char* path) {
    return access(path, F_OK) == 0 ? 1 : 0;
}

int touch(const char* path) {
    const libwlan::unique_fd file(open(path, O_RDWR | O_CREAT, 0666));
    if (!file) {
        std::perror("open");
        std::fprintf(stderr, "Can not create file %s\n", path);
        return 0;
    }
    return 1;
}
