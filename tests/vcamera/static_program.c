// SPDX-License-Identifier: MIT
// A program that nothing can be preloaded into. It makes the file that its argument names, to show
// that it ran.

#include <fcntl.h>
#include <unistd.h>

int main(int argc, char** argv) {
    const int file = open(argc > 1 ? argv[argc - 1] : "ran", O_WRONLY | O_CREAT, 0600);
    return file < 0 || close(file) != 0;
}
