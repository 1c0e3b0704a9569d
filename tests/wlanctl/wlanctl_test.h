// SPDX-License-Identifier: MIT
// A test of the command: each run is the real program on a virtual camera.

#pragma once

#include "tests/support/folder_test.h"
#include "tests/support/scene.h"

#include <regex>

#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

inline const access_point office =
    access_point("Office").bssid("02:00:5e:00:00:01").channel(6).level(-40).wpa2("office-key");
inline const scene mediatek = scene("mediatek").wired().air(office);
inline const scene realtek = scene("realtek").air(office);

class wlanctl : public folder_test {
protected:
    wlanctl() {
        fs::current_path(folder);
        setenv("CAMSTORE_FILE", (folder + "/camera.conf").c_str(), 1);
    }

    /// Puts the test on a fresh camera.
    void plug_in(const scene& camera) const {
        fs::remove_all("world");
        write("/scene.json", camera.json_text());
        write("/camera.conf", "[system]\nmodel = Camera\nmanufacturer = Example\n");
    }

    /// Runs wlanctl with arguments as a shell reads them.
    /// @return its exit status; what it printed is in `out` and `err`.
    int run(const std::string& arguments, const std::string& input = "") {
        write("/in", input);
        return shell(command(arguments) + " <in");
    }

    /// @return what a command prints that succeeds.
    std::string told(const std::string& arguments, const std::string& input = "") {
        EXPECT_EQ(run(arguments, input), 0);
        return out;
    }

    /// @param speed of the camera's clock; 0 does not wait at all.
    static std::string command(const std::string& arguments, const std::string& speed = "0") {
        return "'" VCAMERA "' --scene scene.json --speed " + speed + " --scratch world -- '" WLANCTL "' " + arguments;
    }

    /// Lets at least twenty seconds of the camera's clock pass.
    void let_seconds_pass() { shell("'" VCAMERA "' --speed 1000 --scratch world -- sleep 0.02"); }

    /// @return the intercepted calls, in order.
    std::string journal() {
        shell("'" VCAMERA "' log --scratch world");
        return out;
    }

    std::string out;
    std::string err;

private:
    int shell(const std::string& command) {
        const int status = std::system((command + " >out 2>err").c_str());
        out = read("/out");
        err = read("/err");
        return WEXITSTATUS(status);
    }
};

/// A command in a terminal of its own.
class terminal {
public:
    explicit terminal(const std::string& command) : child_(forkpty(&side_, nullptr, nullptr, nullptr)) {
        if (child_ == 0) {
            alarm(60); // so that nobody waits for ever
            execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
            _exit(127);
        }
    }
    ~terminal() { close(side_); }
    terminal(const terminal&) = delete;
    terminal& operator=(const terminal&) = delete;

    /// @return what it shows from here on, to this part or to its end.
    std::string show(const std::string& part) const {
        std::string shown;
        for (char byte = 0; shown.find(part) == std::string::npos && ::read(side_, &byte, 1) == 1;)
            shown += byte;
        return shown;
    }

    void type(const std::string& line) const {
        const std::string keys = line + "\n";
        EXPECT_EQ(::write(side_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }

    /// Presses Ctrl-C.
    /// @return the status with which it ends.
    [[nodiscard]] int press_ctrl_c() const {
        EXPECT_EQ(::write(side_, "\x03", 1), 1);
        int status = -1;
        EXPECT_EQ(waitpid(child_, &status, 0), child_);
        return status;
    }

    [[nodiscard]] bool shows_typing() const {
        termios settings{};
        tcgetattr(side_, &settings);
        return (settings.c_lflag & ECHO) != 0;
    }

private:
    int side_ = -1;
    pid_t child_;
};

inline testing::AssertionResult has(const std::string& text, const std::string& part) {
    return testing::AssertionResult(text.find(part) != std::string::npos) << '"' << part << "\" in:\n" << text;
}
