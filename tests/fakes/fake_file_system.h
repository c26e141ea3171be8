// Files in memory. Names compare without case and keep theirs; folders exist as soon as a file is in them.
#pragma once

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/file_system.h"
#include "text/encoding.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {

class FakeFileSystem : public FileSystem {
    struct Reader : FolderReader {
        std::vector<std::pair<std::string, bool>> names;
        std::function<void()> before;
        std::size_t at = 0;
        Reader(std::vector<std::pair<std::string, bool>> n, std::function<void()> b) : names(std::move(n)), before(std::move(b)) {}
        bool next(std::string& name, bool& isFolder) override {
            if (at == names.size()) return false;
            if (before) before();
            std::tie(name, isFolder) = names[at++];
            return true;
        }
    };

  public:
    struct File {
        std::string path;
        std::string bytes;
        bool readOnly = false;
    };
    std::vector<File> all;                // in the order of their making, which is the order of enumeration
    std::vector<std::pair<std::string, DriveType>> driveList{{"C:\\", DriveType::Fixed}};
    std::string program = "C:\\Quenlox";
    std::string current = "C:\\Quenlox";
    std::string user;                     // empty: the folder of the program
    bool western = false;                 // the code page of the machine
    bool writesFail = false;
    bool renamesFail = false;
    std::set<std::string> unreadable;     // paths that exist and cannot be read
    std::function<void()> perName;        // called before each name of a folder that is read
    std::function<void()> perRead;        // called before each file that is read; may throw
    int writes = 0;
    int reads = 0;

    void add(const std::string& path, std::string bytes = {}) {
        if (File* file = lookUp(path)) {
            file->bytes = std::move(bytes);
        } else {
            all.push_back({path, std::move(bytes), false});
        }
    }
    File* lookUp(const std::string& path) {
        const auto found = std::find_if(all.begin(), all.end(), [&](const File& f) { return EqualsNoCase(f.path, path); });
        return found == all.end() ? nullptr : &*found;
    }
    std::string bytesOf(const std::string& path) {
        const File* file = lookUp(path);
        return file ? file->bytes : std::string();
    }

    bool fileExists(const std::string& path) override { return lookUp(path) != nullptr; }
    bool folderExists(const std::string& path) override {
        const std::string folder = FoldCase(JoinPath(path, ""));
        for (const auto& [root, type] : driveList) {
            if (FoldCase(root) == folder) return true;
        }
        return std::any_of(all.begin(), all.end(), [&](const File& f) { return FoldCase(f.path).starts_with(folder); });
    }
    bool isReadOnly(const std::string& path) override {
        const File* file = lookUp(path);
        return file && file->readOnly;
    }
    std::optional<std::string> read(const std::string& path, std::uint64_t limit) override {
        ++reads;
        if (perRead) perRead();
        const File* file = lookUp(path);
        if (!file || unreadable.contains(path) || file->bytes.size() > limit) return std::nullopt;
        return file->bytes;
    }
    WriteResult write(const std::string& path, std::string_view bytes) override {
        ++writes;
        if (writesFail) return WriteError::Disk;
        if (isReadOnly(path)) return WriteError::InUse;
        add(path, std::string(bytes));
        return {};
    }
    bool rename(const std::string& from, const std::string& to) override {
        File* file = lookUp(from);
        const File* other = lookUp(to);
        if (renamesFail || !file || (other && other != file) || FileNameOf(to).find_first_of("/:*?\"<>|") != std::string::npos) return false;
        file->path = to;
        return true;
    }
    bool remove(const std::string& path) override {
        if (!lookUp(path) || isReadOnly(path)) return false;
        std::erase_if(all, [&](const File& f) { return EqualsNoCase(f.path, path); });
        return true;
    }
    std::unique_ptr<FolderReader> readFolder(const std::string& folder) override {
        const std::string start = FoldCase(JoinPath(folder, ""));
        std::vector<std::pair<std::string, bool>> names;  // with whether it is a folder
        const auto see = [&](const std::string& path) {
            if (!FoldCase(path).starts_with(start) || path.size() == start.size()) return;
            const std::size_t end = path.find('\\', start.size());
            std::string name = path.substr(start.size(), end - start.size());
            const bool isFolder = end != std::string::npos;
            const auto same = [&](const auto& n) { return EqualsNoCase(n.first, name); };
            if (!isFolder || std::none_of(names.begin(), names.end(), same)) names.emplace_back(std::move(name), isFolder);
        };
        for (const File& file : all) see(file.path);
        return std::make_unique<Reader>(std::move(names), perName);
    }
    std::vector<std::string> drives() override {
        std::vector<std::string> roots;
        for (const auto& [root, type] : driveList) roots.push_back(root);
        return roots;
    }
    DriveType driveType(const std::string& root) override {
        for (const auto& [name, type] : driveList) {
            if (EqualsNoCase(name, root)) return type;
        }
        return DriveType::NoRoot;
    }
    std::string programFolder() override { return program; }
    std::string userFolder() override { return user.empty() ? program : user; }
    std::string currentFolder() override { return current; }
    std::optional<std::string> fromCodePage(std::string_view bytes) override {
        return western ? std::optional(Latin1ToUtf8(bytes)) : std::nullopt;
    }
};

}  // namespace quenlox
