// SPDX-License-Identifier: MIT
// Hostile input: the virtual camera's scenes.

#include "vcamera/scene/scene.h"

#include <filesystem>

#include <nlohmann/json.hpp>

#include "fuzz/fuzz_check.h"

/// A scene's text: a camera is made of it, or it is refused with a word about where it is wrong.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static const std::string scratch = std::filesystem::temp_directory_path() / "fuzzed_camera";
    const std::string text(data, data + size);
    if (!nlohmann::json::accept(text))
        return 0;
    try {
        make_camera(text, scratch);
    } catch (const std::runtime_error&) {
        return 0;
    }
    fuzz_check(read_text(scratch + "/scene.json") == text);
    return 0;
}
