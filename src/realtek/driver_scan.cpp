// SPDX-License-Identifier: MIT
// Asking a Realtek driver to scan, and for the results.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/select.h>

#include "base/message.h"
#include "base/unique_fd.h"
#include "base/wireless_ioctl.h"
#include "libwlan/wext.h"
#include "realtek/scan_events.h"

using namespace libwlan;
using namespace libwlan::realtek;

namespace {

constexpr int bring_up_tries = 60;

constexpr int first_wait = 250000; // microseconds, as all waits here
constexpr int next_wait = 100000;
constexpr int waiting_budget = 15000000;

constexpr int first_buffer = 4096;
constexpr int doubled_up_to = 0x4000000;
constexpr int grown_by = 16384;
constexpr int largest_buffer = 0x10000000; // no camera has so much memory
constexpr int length_field_limit = 0xFFFF;

/// Sleeps with the resolution of microseconds.
/// @return false when even that failed.
bool wait(int microseconds) {
    for (;;) {
        timeval time{microseconds / 1000000, microseconds % 1000000};
        const int ready = select(0, nullptr, nullptr, nullptr, &time);
        if (ready == 0)
            return true;
        if (ready < 0 && errno != EAGAIN && errno != EINTR)
            return false;
    }
}

struct buffer {
    unsigned char* bytes = nullptr;
    int size = 0;
    buffer() = default;
    buffer(const buffer&) = delete;
    buffer& operator=(const buffer&) = delete;
    ~buffer() { std::free(bytes); }

    bool grow(int wanted) {
        auto* grown =
            static_cast<unsigned char*>(std::realloc(bytes, static_cast<std::size_t>(wanted)));
        if (grown == nullptr)
            return false;
        bytes = grown;
        size = wanted;
        return true;
    }
};

/// The size to try after the driver found `size` too small.
int next_size(int size, int named_by_driver) {
    if (named_by_driver > size)
        return named_by_driver;
    return size <= doubled_up_to ? size * 2 : size + grown_by;
}

enum class outcome { results, not_ready, refused, no_memory };

/// Asks for the results once, with an ever larger buffer as long as the driver finds it too small.
/// @param length receives the number of bytes that the driver filled.
outcome fetch(int control, const char* ifname, buffer& buffer, std::size_t& length, FILE* log) {
    for (int size = buffer.size == 0 ? first_buffer : buffer.size;;) {
        if (size > largest_buffer || !buffer.grow(size)) {
            print_message(log, "driver_get_scan_results: Allocation failed. res_buf_len=%d\n",
                          size);
            return outcome::no_memory;
        }
        // The length's field has 16 bits: a larger buffer is offered as the most that it can say.
        const auto offered = static_cast<std::size_t>(std::min(size, length_field_limit));
        iwreq request = data_request(ifname, buffer.bytes, offered);
        if (wireless_ioctl(control, SIOCGIWSCAN, request) >= 0) {
            length = std::min<std::size_t>(request.u.data.length, static_cast<std::size_t>(size));
            return outcome::results;
        }
        if (errno != E2BIG)
            return errno == EAGAIN ? outcome::not_ready : outcome::refused;
        size = next_size(size, request.u.data.length);
    }
}

} // namespace

int wext::driver_scan(FILE* log, const char* ifname) {
    if (network_nic_ifc_up(log, ifname, bring_up_tries) != 0) {
        print_message(log, "driver_scan[1053] Enable %s interface fail.\n",
                      ifname == nullptr ? "" : ifname);
        return -1;
    }
    const unique_fd control(open_request_socket());
    if (!control) {
        print_message(log, "driver_scan: create socket fail\n");
        return -1;
    }
    iwreq request = named_request(ifname); // no parameters: a scan of everything
    if (wireless_ioctl(control.get(), SIOCSIWSCAN, request) < 0) {
        std::perror("SIOCSIWSCAN");
        return -1;
    }
    return 0;
}

int wext::driver_get_scan_results(FILE* log, const char* ifname, scan_result_t* results) {
    const unique_fd control(open_request_socket());
    if (!control) {
        print_message(log, "driver_get_scan_results: create socket fail\n");
        return -1;
    }
    buffer buffer;
    std::size_t length = 0;
    outcome answer = outcome::not_ready;
    int pause = first_wait;
    for (int budget = waiting_budget; answer == outcome::not_ready && budget > 0;
         budget -= next_wait) {
        if (!wait(pause)) {
            print_message(log, "Unhandled signal - exiting...\n");
            return -1;
        }
        answer = fetch(control.get(), ifname, buffer, length, log);
        pause = next_wait;
    }
    if (answer == outcome::no_memory)
        return -1;
    if (answer != outcome::results) {
        print_message(log, "%-8.16s  Failed to read scan data : %s\n\n",
                      ifname == nullptr ? "" : ifname, std::strerror(errno));
        return -1;
    }
    if (length == 0)
        return -1;
    return walk_scan_events({buffer.bytes, length}, results, log);
}
