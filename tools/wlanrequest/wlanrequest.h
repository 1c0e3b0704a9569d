// SPDX-License-Identifier: MIT
/// @file
/// Requests to the radio from a program with an event loop: each is a wlanctl process, whose events
/// can be waited for with poll(), which can be cancelled, and which leaves nothing behind.
///
///     static const char *const arguments[] = {"join", "Office", "--key-file", "-", NULL};
///     wlan_request *request = wlan_request_start(arguments, key);
///     ... poll(wlan_request_fd(request)) ...
///     while ((result = wlan_request_next(request, &line)) == 1)
///         puts(line);
///     if (result < 0)
///         wlan_request_free(request);
///
/// Several requests may exist at once, each used by one thread at a time; wlanctl itself carries
/// out one after the other. The events and their fields are those of `wlanctl --json --progress`,
/// see wlanctl(8).

#pragma once

#ifdef __cplusplus
extern "C" {
#endif

#ifndef WLAN_REQUEST_API
#define WLAN_REQUEST_API __attribute__((visibility("default")))
#endif

/// The longest line that is handed out, in bytes without its end. A longer one is left out.
enum { wlan_request_longest_line = 65535 };

/// A request under way, or over and not yet freed.
typedef struct wlan_request wlan_request; // NOLINT(modernize-use-using): C's header, too

/// Starts `wlanctl --json --progress ARGUMENT...`: the program that the environment variable
/// WLANCTL names, or else the first of that name in PATH.
///
/// The process has a process group of its own, default signal dispositions, an empty signal mask
/// and three descriptors: its input (the key, or /dev/null), its output (the events) and the
/// caller's standard error. No other descriptor of the caller reaches it. It keeps the caller's
/// environment, working folder and umask.
/// @param arguments of wlanctl, without its name; null at the end. Copied.
/// @param key for wlanctl's standard input, where `--key-file -` reads it; at most 4096 bytes.
/// Null:
///     there is none. It is in no argument, no environment variable and no file.
/// @return the request, to be given to wlan_request_free(), or null with errno: ENOENT and EACCES
///     from the search for wlanctl, EINVAL for a longer key, EMFILE, ENFILE, ENOMEM, EAGAIN.
WLAN_REQUEST_API wlan_request* wlan_request_start(const char* const* arguments, const char* key);

/// @return the descriptor to poll() for POLLIN, valid until wlan_request_free(). It tells what has
///     not been read yet, so take lines until wlan_request_next() returns something other than 1.
WLAN_REQUEST_API int wlan_request_fd(const wlan_request* request);

/// Gives the next event. Does not wait.
/// @param line set to the event's JSON text, without its line end, when 1 is returned: valid until
///     the next call for this request. Lines that are too long or hold a NUL are left out, and so
///     is one that the process ended in the midst of.
/// @return 1: an event. 0: none yet. -1: there will be none, with errno 0 when the process closed
/// its
///     output, or else what went wrong with reading it. A process that was killed says no outcome:
///     who has seen none by now is to take the request as failed.
WLAN_REQUEST_API int wlan_request_next(wlan_request* request, const char** line);

/// Asks the process to stop what it has begun and to end (SIGTERM): it does within about a second,
/// with an outcome that says "cancelled" unless it was there before. Does not wait.
/// @return 0, also when the process has ended already; or -1 with errno.
WLAN_REQUEST_API int wlan_request_cancel(wlan_request* request);

/// Ends the request: a process that still runs is cancelled, and killed together with the programs
/// that it runs when it has not ended after 2 seconds. Then its exit status is collected and all
/// that the request holds is let go. Blocks for as long as that takes, not at all after the last
/// event.
/// @param request null is none.
WLAN_REQUEST_API void wlan_request_free(wlan_request* request);

#ifdef __cplusplus
}
#endif
