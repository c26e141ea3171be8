// The files of one test.
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace vbmp3::test {

inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A folder of its own, removed with everything in it.
class TempDir {
  public:
    TempDir() {
        static int counter = 0;
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        path_ = std::filesystem::temp_directory_path() /
                ("vbmp3-test-" + std::to_string(stamp) + "-" + std::to_string(++counter));
        std::filesystem::create_directories(path_);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::string path(const std::string& name = "") const { return (path_ / name).string(); }
    // Text or bytes; gives the path.
    template <class Contents>
    std::string write(const std::string& name, const Contents& contents) const {
        std::ofstream(path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(contents.data()), std::streamsize(contents.size()));
        return path(name);
    }
    std::set<std::string> names() const {
        std::set<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            all.insert(entry.path().filename().string());
        return all;
    }

  private:
    std::filesystem::path path_;
};

}  // namespace vbmp3::test
