// SPDX-License-Identifier: MIT
// A camera program's event loop that joins a network, shows what happens and cancels at a keypress
// (Enter, without a terminal's raw mode). With a count it does so that many times and then looks
// whether a descriptor, a child or memory is left.
//
//     event_loop Office KEY [COUNT]      KEY "-" for an open network

#include <dirent.h>
#include <errno.h>
#include <malloc.h>
#include <poll.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <wlanrequest.h>

enum { warm_up = 10 }; // requests after which malloc keeps no more for its next callers

enum result { joined, not_joined, not_started };

static bool is_outcome(const char* line) {
    return strstr(line, "\"event\": \"outcome\"") != NULL;
}

/// Takes all events that are there.
/// @return false once there will be none.
static bool show_events(wlan_request* request, enum result* result) {
    const char* line = NULL;
    int taken = 0;
    while ((taken = wlan_request_next(request, &line)) == 1) {
        puts(line);
        if (is_outcome(line) && strstr(line, "\"ok\": true") != NULL)
            *result = joined;
    }
    return taken == 0;
}

static void take_keypress(struct pollfd* keyboard, wlan_request* request) {
    char typed[64];
    if (read(keyboard->fd, typed, sizeof typed) > 0) {
        wlan_request_cancel(request);
    } else {
        keyboard->fd = -1; // closed: poll() passes over it
    }
}

static enum result join(const char* const* arguments, const char* key) {
    wlan_request* const request = wlan_request_start(arguments, key);
    if (request == NULL) {
        perror("starting wlanctl");
        return not_started;
    }
    enum result result = not_joined;
    struct pollfd sources[] = {{wlan_request_fd(request), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    bool goes_on = true;
    while (goes_on) {
        if (poll(sources, 2, -1) < 0 && errno != EINTR)
            break;
        if (sources[1].revents != 0)
            take_keypress(&sources[1], request);
        if (sources[0].revents != 0)
            goes_on = show_events(request, &result);
    }
    wlan_request_free(request);
    return result;
}

static int open_descriptors(void) {
    DIR* const folder = opendir("/proc/self/fd");
    if (folder == NULL)
        return -1;
    int count = 0;
    while (readdir(folder) != NULL)
        ++count;
    closedir(folder);
    return count;
}

static bool has_children(void) {
    return waitpid(-1, NULL, WNOHANG) >= 0 || errno != ECHILD;
}

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) {
        fprintf(stderr, "usage: event_loop SSID KEY [COUNT]\n");
        return 2;
    }
    const bool has_key = strcmp(argv[2], "-") != 0;
    const char* const with_key[] = {"join", "--key-file", "-", "--", argv[1], NULL};
    const char* const without_key[] = {"join", "--", argv[1], NULL};
    const char* const* arguments = has_key ? with_key : without_key;
    const char* const key = has_key ? argv[2] : NULL;
    const int count = argc == 4 ? atoi(argv[3]) : 1;

    setvbuf(stdout, NULL, _IOLBF, BUFSIZ);
    enum result result = not_joined;
    int descriptors = 0;
    size_t heap = 0;
    for (int done = 0; done < count && result != not_started; ++done) {
        if (done == warm_up || done == 0) {
            descriptors = open_descriptors();
            heap = mallinfo2().uordblks;
        }
        result = join(arguments, key);
    }
    if (count > 1) {
        printf("left after %d: %d descriptors, %ld bytes, %s\n", count,
               open_descriptors() - descriptors, (long)(mallinfo2().uordblks - heap),
               has_children() ? "children" : "no child");
    }
    return result == joined ? 0 : 1;
}
