// SPDX-License-Identifier: MIT
// What a scene has the driver answer in place of what it hears.

#include "vcamera/interpose/scene_answer.h"

#include <fstream>
#include <iterator>

#include "vcamera/model/camera_state.h"

std::optional<std::string> scene_answer(const std::string& name) {
    std::ifstream file(in_scratch("/answers/" + name));
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}
