// SPDX-License-Identifier: MIT
// A store write that is cut short at any moment: the process that writes is killed before and after each of its system
// calls, and the file must hold the old settings or the new ones, whole.

#include "tests/support/store_files.h"

#include <csignal>
#include <set>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const std::string old_text = "# keep\n[client]\nssid = Old\nkey = old-key-1\nauth = wpapsk\nenc = tkip\nodd = 1\n";

int store_network() {
    return set_client("New", "new-key-1");
}

enum ending { killed, finished, failed, not_traced };

/// Has another process store the network, and kills it at the given stop: each of its system calls stops twice.
ending store_until(int stop) {
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(not_traced);
        }
        raise(SIGSTOP);
        _exit(store_network() == 0 ? finished : failed);
    }
    int status = 0;
    waitpid(child, &status, 0);
    for (int stops = 0; stops < stop && WIFSTOPPED(status); ++stops) {
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        waitpid(child, &status, 0);
    }
    if (WIFSTOPPED(status)) {
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
    }
    return WIFEXITED(status) ? static_cast<ending>(WEXITSTATUS(status)) : killed;
}

using store_crash = store_files;

TEST_F(store_crash, leaves_old_settings_or_new_ones_whole) {
    write(old_text);
    ASSERT_EQ(store_network(), 0);
    const std::string new_text = read();
    std::set<std::string> found;
    bool copies = false;
    ending end = killed;
    for (int stop = 0; end == killed; ++stop) {
        write(old_text);
        end = store_until(stop);
        if (end == not_traced) {
            GTEST_SKIP() << "no process may trace another here";
        }
        found.insert(read());
        copies = copies || left_copy();
        ASSERT_EQ(store_network(), 0) << "after a kill at stop " << stop;
        ASSERT_EQ(read(), new_text) << "after a kill at stop " << stop;
        ASSERT_FALSE(left_copy());
    }
    EXPECT_EQ(end, finished);
    EXPECT_TRUE(copies); // some kills came in the middle
    EXPECT_EQ(found, (std::set<std::string>{old_text, new_text}));
}

} // namespace
