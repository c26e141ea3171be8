// A folder of its own for a test's files, removed with the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class TempFolder : public testing::Test {
  protected:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tag_files_XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }
    ~TempFolder() override { std::filesystem::remove_all(folder_); }

    std::string file(const std::string& name, const std::string& contents) {
        const std::string path = (folder_ / name).string();
        std::ofstream(path, std::ios::binary) << contents;
        return path;
    }
    static std::string contents(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    int files() const { return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder_), {})); }

    std::filesystem::path folder_;
};
