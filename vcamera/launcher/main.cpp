// SPDX-License-Identifier: MIT
// vcamera: runs a program on the virtual camera.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "vcamera/launcher/run_program.h"
#include "vcamera/model/clock.h"
#include "vcamera/scene/camera.h"
#include "vcamera/scene/scene.h"

namespace fs = std::filesystem;

namespace {

constexpr int failed = 1;
constexpr int wrong_usage = 2;
constexpr int cannot_run = 127;

constexpr const char* description =
    R"(Runs a program on a virtual camera: its calls to the Wi-Fi driver, network interfaces, daemons
and files of a camera are answered from a scratch folder and reach none of this machine's. A program
whose calls cannot be intercepted is not run. State lasts from one command to the next.

    vcamera --scene mtk-office.json -- wlanctl ap start --stored
    vcamera -- wlanctl status     goes on with the same camera
    vcamera log                   shows the intercepted calls
)";

struct request {
    std::string scene;
    std::string scratch;
    int speed = 1;
    bool fresh = false;
    std::vector<std::string> program;
};

std::string usual_scratch() {
    if (const char* chosen = scratch_folder())
        return chosen;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string base = runtime != nullptr && *runtime != '\0' ? runtime : "/tmp";
    return base + "/vcamera-" + std::to_string(getuid());
}

/// Goes on with the camera in the scratch folder, unless a new one is wanted.
void prepare_camera(const request& request) {
    const std::string kept = request.scratch + "/scene.json";
    const std::string present = read_text(kept);
    if (request.scene.empty() && errno == ENOENT)
        throw std::runtime_error("there is no camera yet; give --scene");
    const std::string file = request.scene.empty() ? kept : request.scene;
    const std::string scene = read_text(file);
    if (scene.empty()) {
        throw std::runtime_error(
            file + ": cannot read: " + (errno != 0 ? std::strerror(errno) : "it is empty"));
    }
    try {
        if (request.fresh || scene != present)
            make_camera(scene, request.scratch);
    } catch (const wrong_scene& reason) {
        throw std::runtime_error(file + ": " + reason.what());
    }
    // In a folder like /tmp it could be someone else's; this fails on those.
    fs::permissions(request.scratch, fs::perms::owner_all);
    setenv("VCAMERA_SCRATCH", request.scratch.c_str(), 1);
    setenv("CAMSTORE_FILE", (request.scratch + "/etc/camera.conf").c_str(), 0);
    set_speed(*locked_camera(), request.speed);
}

int show_log(const std::string& scratch) {
    if (!fs::exists(scratch + "/journal")) {
        std::fprintf(stderr, "vcamera: there is no camera in %s\n", scratch.c_str());
        return failed;
    }
    for (const vcamera::line& line : vcamera::journal(scratch)) {
        std::printf("%6ld.%03ld  %-24s %-13s %s  -> %s\n", line.milliseconds / 1000,
                    line.milliseconds % 1000, line.subject.c_str(), line.request.c_str(),
                    line.text.c_str(), line.answer.c_str());
    }
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return 0;
    std::perror("vcamera: cannot write the log");
    return failed;
}

int launch(int argc, char** argv) {
    request request;
    CLI::App app(description, "vcamera");
    app.add_option("--scene", request.scene, "Scene (JSON); the same one goes on with its camera");
    app.add_option("--scratch", request.scratch, "Folder that holds the camera")
        ->default_val(usual_scratch());
    app.add_option("--speed", request.speed, "How fast time runs; 0 does not wait at all")
        ->check(CLI::Range(0, 1000))
        ->capture_default_str();
    app.add_flag("--fresh", request.fresh, "Start over with a new camera");
    app.add_option("program", request.program, "After --: the program to run, and its arguments");
    CLI::App* log =
        app.add_subcommand("log", "Show the intercepted calls, in order")->fallthrough();
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ExtrasError& error) {
        const bool marked = std::find(argv, argv + argc, std::string("--")) != argv + argc;
        throw std::runtime_error(std::string(error.what()) +
                                 (marked ? "" : "; put -- before the program"));
    }
    request.scratch = fs::absolute(request.scratch);
    if (log->parsed())
        return show_log(request.scratch);
    if (request.program.empty())
        throw std::runtime_error("no program to run; see vcamera --help");
    prepare_camera(request);
    run_program(request.program, request.scratch);
    return cannot_run;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return launch(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vcamera: %s\n", error.what());
        return wrong_usage;
    }
}
