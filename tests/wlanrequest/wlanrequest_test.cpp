// SPDX-License-Identifier: MIT
// Requests as wlanctl processes, with scripts in the place of wlanctl.

#include <cerrno>
#include <csignal>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <wlanrequest.h>

#include "tests/support/folder_test.h"
#include "tests/support/resource_usage.h"

namespace {

using lines = std::vector<std::string>;

const char* const no_arguments[] = {nullptr};

class wlanrequest_test : public folder_test {
protected:
    /// What takes the place of wlanctl.
    void write_wlanctl(const std::string& script) const {
        write("/wlanctl", "#!/bin/sh\n" + script);
        fs::permissions(folder + "/wlanctl", fs::perms::owner_all);
        setenv("WLANCTL", (folder + "/wlanctl").c_str(), 1);
    }

    /// All events of a request, waited for as an event loop does.
    static lines events_of(wlan_request* request) {
        lines events;
        const char* line = nullptr;
        for (;;) {
            const int result = wlan_request_next(request, &line);
            if (result < 0)
                return events;
            if (result == 1) {
                events.emplace_back(line);
            } else {
                wait_for(request);
            }
        }
    }

    static void wait_for(wlan_request* request) {
        pollfd output = {wlan_request_fd(request), POLLIN, 0};
        ASSERT_EQ(poll(&output, 1, 20000), 1);
    }

    static std::string first_event(wlan_request* request) {
        const char* line = nullptr;
        while (wlan_request_next(request, &line) == 0)
            wait_for(request);
        return line == nullptr ? "" : line;
    }

    static lines run(const char* const* arguments = no_arguments, const char* key = nullptr) {
        wlan_request* request = wlan_request_start(arguments, key);
        if (request == nullptr)
            return {"not started"};
        lines events = events_of(request);
        wlan_request_free(request);
        return events;
    }

    [[nodiscard]] int number_in(const std::string& file) const {
        const std::string text = read(file);
        return text.empty() ? 0 : std::stoi(text);
    }

    /// Waits for a process that was killed; one that nobody has collected is gone, too.
    static bool goes(int process) {
        for (int turn = 0; turn < 10000; ++turn) {
            std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
            std::string text;
            std::getline(stat, text);
            if (text.empty() || text.find(") Z ") != std::string::npos)
                return true;
            usleep(1000);
        }
        return false;
    }
};

TEST_F(wlanrequest_test, passes_arguments_and_key) {
    write_wlanctl("for a; do echo \"<$a>\"; done; cat; echo '|'");
    const char* const arguments[] = {"join", "A name", "", "--key-file", "-", nullptr};
    EXPECT_EQ(run(arguments, "eight characters"), (lines{"<--json>", "<--progress>", "<join>", "<A name>", "<>",
                                                         "<--key-file>", "<->", "eight characters|"}));
    EXPECT_EQ(run(no_arguments, "").back(), "|");
    EXPECT_EQ(run().back(), "|") << "standard input is empty without a key";
}

TEST_F(wlanrequest_test, finds_wlanctl_in_path) {
    write_wlanctl("echo found");
    const char* const found = getenv("PATH");
    const std::string path = found == nullptr ? "" : found;
    unsetenv("WLANCTL");
    setenv("PATH", (folder + ":" + path).c_str(), 1);
    EXPECT_EQ(run(), lines{"found"});
    setenv("PATH", path.c_str(), 1);
}

TEST_F(wlanrequest_test, gives_the_child_a_clean_start) {
    // Signals 32 and 33 are the C library's own, and stay as they are.
    write_wlanctl("grep -E 'SigBlk|SigIgn' /proc/self/status | sed s/180000000/000000000/\n"
                  "ls /proc/self/fd | wc -w\n"
                  "ps -o pgid= -p $$ 2>/dev/null | grep -q $$ || cut -d' ' -f5 /proc/$$/stat | grep -qx $$ "
                  "&& echo own group");
    const int inherited[] = {open("/dev/null", O_RDONLY), dup2(0, 700)}; // without FD_CLOEXEC
    sigset_t blocked;
    sigfillset(&blocked);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    const auto old_handler = std::signal(SIGPIPE, SIG_IGN);
    const lines events = run();
    std::signal(SIGPIPE, old_handler);
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
    EXPECT_EQ(events, (lines{"SigBlk:\t0000000000000000", "SigIgn:\t0000000000000000",
                             "4", // standard streams, and the folder that ls reads
                             "own group"}));
    for (const int descriptor : inherited)
        close(descriptor);
}

TEST_F(wlanrequest_test, hands_out_whole_lines_only) {
    const std::string long_line(wlan_request_longest_line, 'x');
    const struct {
        const char* name;
        const char* script;
        lines events;
    } rows[] = {
        {"nothing", "", {}},
        {"one line in pieces", "printf '{\"ev'; sleep 0.01; printf 'ent\": 1}\\n'", {"{\"event\": 1}"}},
        {"several at once", "printf 'a\\nb\\n\\nc\\n'", {"a", "b", "", "c"}},
        {"no end", "printf 'whole\\nhal'", {"whole"}},
        {"a NUL", "printf 'a\\0b\\nc\\n'", {"c"}},
        {"bytes of no meaning", "printf '\\377\\201\\r\\033[2J\\n'", {"\377\201\r\033[2J"}},
        {"the longest", "head -c 65535 /dev/zero | tr '\\0' x; printf '\\nb\\n'", {long_line, "b"}},
        {"too long", "printf 'a\\n'; head -c 65536 /dev/zero | tr '\\0' x; printf '\\nb\\n'", {"a", "b"}},
        {"far too long", "head -c 9999999 /dev/zero | tr '\\0' x; printf '\\nb\\n'", {"b"}},
        {"too long, no end", "head -c 999999 /dev/zero", {}},
        {"killed", "printf 'a\\n'; kill -9 $$", {"a"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        write_wlanctl(row.script);
        EXPECT_EQ(run(), row.events);
    }
}

TEST_F(wlanrequest_test, says_end_and_nothing_else_again) {
    write_wlanctl("echo one");
    wlan_request* request = wlan_request_start(no_arguments, nullptr);
    events_of(request);
    for (int again = 0; again < 2; ++again) {
        const char* line = "";
        errno = EIO;
        EXPECT_EQ(wlan_request_next(request, &line), -1);
        EXPECT_EQ(errno, 0);
        EXPECT_EQ(line, nullptr);
    }
    EXPECT_EQ(wlan_request_cancel(request), 0);
    wlan_request_free(request);
}

TEST_F(wlanrequest_test, returns_while_the_child_floods) {
    write_wlanctl("exec cat /dev/zero");
    wlan_request* request = wlan_request_start(no_arguments, nullptr);
    const char* line = nullptr;
    for (int turn = 0; turn < 20; ++turn) {
        wait_for(request);
        ASSERT_EQ(wlan_request_next(request, &line), 0);
    }
    wlan_request_free(request);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(wlanrequest_test, cancels_what_runs) {
    write_wlanctl("trap 'echo cancelled; exit 1' TERM; echo begun; while :; do sleep 0.02; done");
    wlan_request* request = wlan_request_start(no_arguments, nullptr);
    EXPECT_EQ(first_event(request), "begun");
    EXPECT_EQ(wlan_request_cancel(request), 0);
    EXPECT_EQ(events_of(request), lines{"cancelled"});
    wlan_request_free(request);
}

TEST_F(wlanrequest_test, cancels_when_freed_early) {
    write_wlanctl("trap 'head -c 300000 /dev/zero; echo done >\"$0.undone\"; exit 1' TERM\n"
                  "echo begun; while :; do sleep 0.02; done");
    wlan_request* request = wlan_request_start(no_arguments, nullptr);
    EXPECT_EQ(first_event(request), "begun");
    wlan_request_free(request);
    EXPECT_EQ(read("/wlanctl.undone"), "done\n") << "it was not let finish";
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(wlanrequest_test, kills_what_does_not_end) {
    write_wlanctl(
        "trap '' TERM; echo $$ >\"$0.pid\"; sleep 60 & echo $! >\"$0.other\"; echo begun; while :; do wait; done");
    wlan_request* request = wlan_request_start(no_arguments, nullptr);
    EXPECT_EQ(first_event(request), "begun");
    wlan_request_free(request);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_TRUE(goes(number_in("/wlanctl.pid")));
    EXPECT_TRUE(goes(number_in("/wlanctl.other")));
}

TEST_F(wlanrequest_test, names_what_keeps_it_from_starting) {
    const resource_usage before = count_resources();
    write_wlanctl("echo never");
    EXPECT_EQ(wlan_request_start(no_arguments, std::string(4097, 'k').c_str()), nullptr);
    EXPECT_EQ(errno, EINVAL);
    fs::permissions(folder + "/wlanctl", fs::perms::owner_read);
    EXPECT_EQ(wlan_request_start(no_arguments, "key"), nullptr);
    EXPECT_EQ(errno, EACCES);
    fs::remove(folder + "/wlanctl");
    EXPECT_EQ(wlan_request_start(no_arguments, "key"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(gained_since(before).others, 0);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    wlan_request_free(nullptr);
}

TEST_F(wlanrequest_test, needs_none_of_the_standard_streams) {
    write_wlanctl("echo loud >&2; cat; echo; ls /proc/self/fd | wc -w");
    const pid_t caller = fork();
    if (caller == 0) {
        for (const int stream : {0, 1, 2})
            close(stream);
        _exit(run(no_arguments, "the key") == lines{"the key", "4"} ? 0 : 1);
    }
    int status = -1;
    waitpid(caller, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(wlanrequest_test, lives_with_a_caller_that_waits_for_all) {
    write_wlanctl("echo one");
    for (const bool ignores : {true, false}) {
        SCOPED_TRACE(ignores);
        if (ignores)
            std::signal(SIGCHLD, SIG_IGN);
        wlan_request* request = wlan_request_start(no_arguments, nullptr);
        EXPECT_EQ(events_of(request), lines{"one"});
        if (!ignores)
            waitpid(-1, nullptr, 0);
        wlan_request_free(request);
        std::signal(SIGCHLD, SIG_DFL);
    }
}

#ifdef WLAN_REQUEST_CLOSE_EACH
constexpr int many = 50; // each of them goes through all numbers that a descriptor may have
#else
constexpr int many = 1000;
#endif

TEST_F(wlanrequest_test, leaves_nothing_after_many) {
    write_wlanctl("while read -r key; do :; done; echo '{\"event\": \"outcome\"}'; exit 1");
    run(no_arguments, "first\n");
    const resource_usage before = count_resources();
    for (int count = 0; count < many; ++count)
        ASSERT_EQ(run(no_arguments, "the key\n"), lines{"{\"event\": \"outcome\"}"});
    const resource_usage gained = gained_since(before);
    EXPECT_EQ(gained.others, 0);
    EXPECT_EQ(gained.sockets, 0);
    EXPECT_EQ(gained.heap, 0);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

} // namespace
