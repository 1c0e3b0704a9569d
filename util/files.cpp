#include "libwlan/files.h"

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

int exist(const char* path) {
    return access(path, F_OK) == 0 ? 1 : 0;
}

int touch(const char* path) {
    const int file = open(path, O_RDWR | O_CREAT, 0666);
    if (file < 0) {
        std::perror("open");
        std::fprintf(stderr, "Can not create file %s\n", path);
        return 0;
    }
    close(file);
    return 1;
}
