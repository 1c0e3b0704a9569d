// SPDX-License-Identifier: MIT
// The virtual camera in a test's own process:
//
//     vcamera::start(R"({"adapter": "mediatek"})", folder);
//     ... call the library ...
//     for (const vcamera::line& line : vcamera::journal(folder)) ...
//
// The test links vcamera (before everything else) and vcamera_scene. Files of the camera stand in
// the folder under their own paths (folder + "/tmp/hostapd.conf"); what was written to the console
// is in folder + "/dev/console". Waiting takes no time: it only moves the camera's clock.

#pragma once

#include <string>
#include <vector>

namespace vcamera {

/// Puts this process, and the programs that it starts with libvcamera.so preloaded, on a fresh
/// camera; may be called again for another one, also in the same folder. Sets VCAMERA_SCRATCH, and
/// CAMSTORE_FILE to the folder's etc/camera.conf.
/// @throw std::runtime_error that says what is wrong with the scene.
void start(const std::string& scene, const std::string& folder);

/// One intercepted call. Texts are escaped as in C.
struct line {
    long milliseconds;   // of the camera's clock
    std::string subject; // interface, path, program, pid or "-"
    std::string
        request;      // "set", "query 0x0678", "SIOCGIWAP", "system", "popen", "kill", "sleep" ...
    std::string text; // "SSID=Camera", "up", a command line, an open mode, "15", "2 s" ...
    std::string length; // the length given with a private request, else "-"
    std::string answer; // "ok", an errno's name, or the exit status of a program
};

std::vector<line> journal(const std::string& folder);

} // namespace vcamera
