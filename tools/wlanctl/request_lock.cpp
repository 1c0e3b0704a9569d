// SPDX-License-Identifier: MIT
// One request at a time, over all processes.

#include "request_lock.h"

#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "cancelling.h"
#include "progress.h"
#include "reasons.h"

namespace {

constexpr char path[] = "/var/run/wlanctl.lock";
constexpr int look_ms = 100;

/// "PID COMMAND", written by the one that holds it.
answer holder(int file) {
    char text[128] = "";
    const ssize_t count = pread(file, text, sizeof text - 1, 0);
    if (count <= 0)
        return answer::object();
    char* command = nullptr;
    const long pid = std::strtol(text, &command, 10);
    return {{"pid", static_cast<int>(pid)}, {"command", *command == ' ' ? command + 1 : command}};
}

void write_holder(int file, const std::string& command) {
    const std::string text = std::to_string(getpid()) + " " + command;
    if (ftruncate(file, 0) != 0 ||
        pwrite(file, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size()))
        return; // who waits is not told for whom
}

} // namespace

// A camera without /var/run goes without: hostapd and wpa_supplicant do not start there either.
request_lock::request_lock(const std::string& command, int patience)
    : file_(open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {
    take_ending_signals();
    if (!file_)
        return;
    int waited_ms = 0;
    while (flock(file_.get(), LOCK_EX | LOCK_NB) != 0) {
        const answer other = holder(file_.get());
        if (asked_to_end())
            throw because({reason::cancelled}, command);
        if (waited_ms >= patience * 1000) {
            throw because({reason::busy,
                           true,
                           "another request is being carried out: wlanctl " +
                               other.at("command").text() + ", process " + other.at("pid").cell(),
                           {{"process", other}}},
                          command);
        }
        if (waited_ms == 0)
            tell_progress("waiting", other);
        pause_ms(look_ms);
        waited_ms += look_ms;
    }
    write_holder(file_.get(), command);
}

answer running_request() {
    const libwlan::unique_fd file(open(path, O_RDONLY | O_CLOEXEC));
    if (!file || flock(file.get(), LOCK_SH | LOCK_NB) == 0)
        return nullptr; // closing it lets it go
    return holder(file.get());
}
