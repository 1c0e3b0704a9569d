// SPDX-License-Identifier: MIT
// The virtual camera in a test's own process.

#include "vcamera/scene/camera.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "vcamera/scene/scene.h"

namespace vcamera {

void start(const std::string& scene, const std::string& folder) {
    make_camera(scene, folder);
    const std::string scratch = std::filesystem::absolute(folder);
    setenv("VCAMERA_SCRATCH", scratch.c_str(), 1);
    setenv("CAMSTORE_FILE", (scratch + "/etc/camera.conf").c_str(), 1);
}

std::vector<line> journal(const std::string& folder) {
    std::ifstream file(folder + "/journal");
    std::vector<line> result;
    for (std::string text; std::getline(file, text);) {
        std::istringstream columns(text);
        const auto next = [&] {
            std::string column;
            std::getline(columns, column, '\t');
            return column;
        };
        // Braces evaluate in order.
        result.push_back({std::stol(next()), next(), next(), next(), next(), next()});
    }
    return result;
}

} // namespace vcamera
