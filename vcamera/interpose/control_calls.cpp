// SPDX-License-Identifier: MIT
// The interposed functions of the daemons' control sockets.

#include <cstdint>
#include <ctime>

#include <fcntl.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/socket.h>

#include "vcamera/interpose/control_table.h"
#include "vcamera/interpose/interposer.h"
#include "vcamera/interpose/time_calls.h"

namespace {

constexpr std::int64_t second = 1000000;

bool has_control(const fd_set* set, int count) {
    for (int fd = 0; set != nullptr && fd < count && fd < FD_SETSIZE; ++fd) {
        if (FD_ISSET(fd, set) && is_control(fd))
            return true;
    }
    return false;
}

bool has_control(const pollfd* fds, nfds_t count) {
    for (nfds_t i = 0; i < count; ++i) {
        if (is_control(fds[i].fd))
            return true;
    }
    return false;
}

fd_set copy_of(const fd_set* set) {
    if (set != nullptr)
        return *set;
    fd_set empty;
    FD_ZERO(&empty);
    return empty;
}

int select_on_camera(int nfds, fd_set* readfds, fd_set* writefds, fd_set* exceptfds,
                     std::int64_t wait) {
    const fd_set sets[] = {copy_of(readfds), copy_of(writefds), copy_of(exceptfds)};
    return wait_on_camera(wait, [&](int milliseconds) {
        fd_set* const given[] = {readfds, writefds, exceptfds};
        for (int i = 0; i < 3; ++i) {
            if (given[i] != nullptr)
                *given[i] = sets[i]; // the kernel has left there who was ready
        }
        timeval part = {milliseconds / 1000, milliseconds % 1000 * 1000L};
        return NEXT(select)(nfds, readfds, writefds, exceptfds, milliseconds < 0 ? nullptr : &part);
    });
}

int poll_on_camera(pollfd* fds, nfds_t nfds, std::int64_t wait) {
    return wait_on_camera(wait,
                          [&](int milliseconds) { return NEXT(poll)(fds, nfds, milliseconds); });
}

std::int64_t microseconds(const timespec& time) {
    return time.tv_sec * second + time.tv_nsec / 1000;
}

/// recv() of a daemon's answer: what is due arrives first.
void wait_for_answer(int fd, int flags) {
    const bool waits = (flags & MSG_DONTWAIT) == 0 && (fcntl(fd, F_GETFL) & O_NONBLOCK) == 0;
    pollfd one = {fd, POLLIN, 0};
    poll_on_camera(&one, 1, waits ? -1 : 0);
}

} // namespace

INTERPOSE ssize_t send(int fd, const void* buf, size_t n, int flags) {
    return on_camera() && is_control(fd) ? send_control(fd, buf, n) : NEXT(send)(fd, buf, n, flags);
}

INTERPOSE ssize_t sendto(int fd, const void* buf, size_t n, int flags, const sockaddr* addr,
                         socklen_t addr_len) {
    return on_camera() && addr == nullptr && is_control(fd)
               ? send_control(fd, buf, n)
               : NEXT(sendto)(fd, buf, n, flags, addr, addr_len);
}

INTERPOSE ssize_t recv(int fd, void* buf, size_t n, int flags) {
    if (on_camera() && is_control(fd))
        wait_for_answer(fd, flags);
    return NEXT(recv)(fd, buf, n, flags);
}

INTERPOSE ssize_t recvfrom(int fd, void* buf, size_t n, int flags, sockaddr* addr,
                           socklen_t* addr_len) {
    if (on_camera() && is_control(fd))
        wait_for_answer(fd, flags);
    return NEXT(recvfrom)(fd, buf, n, flags, addr, addr_len);
}

INTERPOSE int select(int nfds, fd_set* readfds, fd_set* writefds, fd_set* exceptfds,
                     timeval* timeout) {
    if (!on_camera())
        return NEXT(select)(nfds, readfds, writefds, exceptfds, timeout);
    const std::int64_t wait = timeout == nullptr ? -1 : timeout->tv_sec * second + timeout->tv_usec;
    if (nfds == 0 && timeout != nullptr) {
        *timeout = {}; // the kernel leaves there what was not waited
        return pause_for("select", wait);
    }
    if (has_control(readfds, nfds) || has_control(writefds, nfds))
        return select_on_camera(nfds, readfds, writefds, exceptfds, wait);
    return NEXT(select)(nfds, readfds, writefds, exceptfds, timeout);
}

INTERPOSE int poll(pollfd* fds, nfds_t nfds, int timeout) {
    if (!on_camera())
        return NEXT(poll)(fds, nfds, timeout);
    if (nfds == 0 && timeout >= 0)
        return pause_for("poll", std::int64_t{1000} * timeout);
    if (has_control(fds, nfds))
        return poll_on_camera(fds, nfds, timeout < 0 ? -1 : std::int64_t{1000} * timeout);
    return NEXT(poll)(fds, nfds, timeout);
}

INTERPOSE int ppoll(pollfd* fds, nfds_t nfds, const timespec* timeout, const sigset_t* ss) {
    const bool waits = timeout != nullptr;
    if (on_camera() && ss == nullptr && nfds == 0 && waits)
        return pause_for("poll", microseconds(*timeout));
    if (on_camera() && ss == nullptr && has_control(fds, nfds))
        return poll_on_camera(fds, nfds, waits ? microseconds(*timeout) : -1);
    return NEXT(ppoll)(fds, nfds, timeout, ss);
}

// What recv(), poll() and ppoll() become with _FORTIFY_SOURCE.
INTERPOSE ssize_t __recv_chk(int fd, void* buf, size_t n, size_t /*room*/, int flags) {
    return recv(fd, buf, n, flags);
}

INTERPOSE ssize_t __recvfrom_chk(int fd, void* buf, size_t n, size_t /*room*/, int flags,
                                 sockaddr* addr, socklen_t* addr_len) {
    return recvfrom(fd, buf, n, flags, addr, addr_len);
}

INTERPOSE int __poll_chk(pollfd* fds, nfds_t nfds, int timeout, size_t /*room*/) {
    return poll(fds, nfds, timeout);
}

INTERPOSE int __ppoll_chk(pollfd* fds, nfds_t nfds, const timespec* timeout, const sigset_t* ss,
                          size_t /*room*/) {
    return ppoll(fds, nfds, timeout, ss);
}
