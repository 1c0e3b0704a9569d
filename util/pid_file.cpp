#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "libwlan/process.h"
#include "util/integer_text.h"

namespace {

constexpr int death_polls = 10;

int lock_whole_file(int file) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return fcntl(file, F_SETLK, &lock);
}

} // namespace

int create_pid_file(const char* path) {
    // Never closed: the open descriptor is what holds the lock for the life of the process.
    const int file = open(path, O_RDWR | O_CREAT, 0644);
    if (file < 0) {
        std::perror("open");
        return -1;
    }
    if (lock_whole_file(file) != 0) {
        if (errno == EACCES || errno == EAGAIN)
            std::puts("Program already exists.");
        else
            std::printf("Unable to lock %s\n", path);
        return -1;
    }
    char text[40];
    std::snprintf(text, sizeof text, "%ld\n", static_cast<long>(getpid()));
    if (ftruncate(file, 0) != 0 || write(file, text, std::strlen(text)) < 0)
        std::perror("write");
    return 0;
}

int send_signal_ps(const char* pidfile, int signal, int wait) {
    FILE* file = std::fopen(pidfile, "r");
    if (file == nullptr)
        return 0;
    const int pid = read_integer(file).value_or(0);
    std::fclose(file);
    // kill() takes 0 and negative numbers for whole groups of processes.
    if (pid <= 0)
        return 0;

    kill(pid, signal);
    if (wait == 0)
        return 0;
    int polls = 0;
    while (polls < death_polls && kill(pid, 0) == 0) {
        sleep(1);
        ++polls;
    }
    // The count alone decides: a process that died during the last sleep still counts as alive.
    if (polls == death_polls) {
        std::printf("Can not kill process ID %d, pidfile=%s, signal=%d\n", pid, pidfile, signal);
        return -1;
    }
    unlink(pidfile);
    return 0;
}
