// SPDX-License-Identifier: MIT
// Tests that run programs through the real launcher.

#pragma once

#include <sys/wait.h>

#include "tests/support/folder_test.h"

class launched_test : public folder_test {
protected:
    launched_test() {
        fs::current_path(folder);
        write("/scene.json", R"({"adapter": "mediatek"})"); // of ra0, wlan0 and apclii0
        // Of the programs that tests run, only some are the project's own.
        setenv("ASAN_OPTIONS", "detect_leaks=0:handle_segv=0:handle_sigbus=0", 1);
    }
    ~launched_test() override { fs::current_path("/"); }

    /// Runs a line of the shell's; what it prints is in `out` and `err`.
    /// @return its exit status.
    int shell(const std::string& line) {
        const int status = std::system(("{ " + line + "\n} >out 2>err").c_str());
        out = read("/out");
        err = read("/err");
        return WEXITSTATUS(status);
    }

    /// Runs a program on the camera, with arguments as the shell reads them.
    int run(const std::string& program) {
        return shell(vcamera + " --scene scene.json --scratch camera -- " + program);
    }

    /// @return what a program prints that succeeds.
    std::string told(const std::string& program) {
        EXPECT_EQ(run(program), 0) << err;
        return out;
    }

    std::string vcamera = "'" VCAMERA "'";
    std::string out;
    std::string err;
};

inline testing::AssertionResult has(const std::string& text, const std::string& part) {
    return testing::AssertionResult(text.find(part) != std::string::npos) << '"' << part << "\" in:\n" << text;
}
