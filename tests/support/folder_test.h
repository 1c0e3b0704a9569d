// SPDX-License-Identifier: MIT
// Tests that have a folder of their own.

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

class folder_test : public testing::Test {
protected:
    folder_test() {
        std::string pattern = testing::TempDir() + "libwlan.XXXXXX";
        folder = fs::canonical(mkdtemp(pattern.data()));
    }
    ~folder_test() override { fs::remove_all(folder); }

    /// The files of the folder, by their paths in it.
    [[nodiscard]] std::string read(const std::string& path) const {
        std::ifstream file(folder + path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& path, const std::string& text) const {
        fs::create_directories(fs::path(folder + path).parent_path());
        std::ofstream(folder + path, std::ios::binary) << text;
    }
    [[nodiscard]] bool exists(const std::string& path) const { return fs::exists(folder + path); }

    std::string folder;
};
