// SPDX-License-Identifier: MIT
// The sockets of this program that it has connected to a daemon of the camera.

#include "vcamera/interpose/control_table.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "vcamera/model/clock.h"
#include "vcamera/model/daemons.h"

namespace {

/// Plain data: calls come before constructors have run. A socket is known by its inode, whatever
/// its descriptor's number is, so that closing it needs no attention.
struct {
    std::atomic<ino_t> inode; // 0 when the place is free
    int daemon;               // pid of whom it is connected to
    short_text path;          // that it was connected to
} table[64];
std::atomic<unsigned> next_place;
std::atomic<bool> any;

ino_t socket_inode(int fd) {
    struct stat about {};
    return fstat(fd, &about) == 0 && S_ISSOCK(about.st_mode) ? about.st_ino : 0;
}

/// @return the place of a socket, or -1.
int find(int fd) {
    if (!any)
        return -1;
    const int errno_before = errno;
    const ino_t inode = socket_inode(fd);
    errno = errno_before;
    for (std::size_t i = 0; inode != 0 && i < std::size(table); ++i) {
        if (table[i].inode == inode)
            return static_cast<int>(i);
    }
    return -1;
}

fake_daemon* find_daemon(camera_state& state, int pid) {
    for (fake_daemon& daemon : state.daemons) {
        if (daemon.pid != 0 && daemon.pid == pid)
            return &daemon;
    }
    return nullptr;
}

int socket_option(int fd, int option) {
    int value = 0;
    socklen_t size = sizeof value;
    getsockopt(fd, SOL_SOCKET, option, &value, &size);
    return value;
}

bool is_attached(const camera_state& state) {
    return std::any_of(std::begin(state.control.clients), std::end(state.control.clients),
                       [](const control_client& client) { return client.daemon != 0; });
}

constexpr std::int64_t never = INT64_MAX;

/// When the wait ends, or somebody is to be told something.
std::int64_t next_moment(const camera_state& state, std::int64_t end) {
    const std::int64_t due = is_attached(state) ? daemons_due(state) : 0;
    return due == 0 ? end : std::min(end, due);
}

} // namespace

int connect_control(camera_state& state, int fd, const char* path) {
    const fake_daemon* daemon = listening_daemon(state, path);
    if (daemon == nullptr) {
        struct stat about {};
        return stat(path, &about) == 0 ? -ECONNREFUSED : -errno;
    }
    if (socket_option(fd, SO_TYPE) != SOCK_DGRAM)
        return -EPROTOTYPE;
    const int known = find(fd);
    const std::size_t place =
        known >= 0 ? static_cast<std::size_t>(known) : next_place++ % std::size(table);
    table[place].daemon = daemon->pid;
    std::snprintf(table[place].path, sizeof table[place].path, "%s", path);
    table[place].inode = socket_inode(fd);
    any = true;
    return 0;
}

bool is_control(int fd) {
    return find(fd) >= 0;
}

long send_control(int fd, const void* bytes, std::size_t length) {
    const auto& [inode, pid, path] = table[find(fd)];
    const std::string command(static_cast<const char*>(bytes), length);
    sockaddr_un client{};
    socklen_t size = sizeof client;
    getsockname(fd, reinterpret_cast<sockaddr*>(&client), &size);
    const auto answer = [&, to = pid](camera_state& state) {
        fake_daemon* daemon = find_daemon(state, to);
        if (daemon == nullptr)
            return -ECONNREFUSED;
        take_command(state, *daemon, command, client, size);
        return 0;
    };
    return intercept({"send", path, "send", command}, answer) == 0 ? static_cast<long>(length) : -1;
}

int wait_on_camera(std::int64_t wait, const std::function<int(int)>& ready) {
    std::int64_t end = -1;
    for (;;) {
        std::int64_t now = 0;
        std::int64_t moment = 0;
        int speed = 0;
        {
            const locked_camera camera;
            advance_daemons(*camera);
            now = camera_time(*camera);
            speed = (*camera).speed;
            if (end < 0)
                end = wait < 0 ? never : now + wait;
            moment = next_moment(*camera, end);
        }
        int result = ready(0);
        if (result == 0) {
            flood_clients(*locked_camera());
            result = ready(0);
        }
        if (result != 0 || now >= end)
            return result;
        if (moment == never)
            return ready(-1);
        if (speed == 0) {
            const locked_camera camera;
            (*camera).clock_us = std::max((*camera).clock_us, moment);
        } else if (const std::int64_t host_ms = (moment - now) / speed / 1000 + 1;
                   (result = ready(static_cast<int>(std::min<std::int64_t>(host_ms, 1000)))) != 0) {
            return result;
        }
    }
}
