#include "playback/cd_drives.h"

#include "platform/file_system.h"
#include "text/paths.h"

namespace quenlox {
std::vector<std::string> CdDrives(FileSystem& files) {
    std::vector<std::string> roots;
    for (const std::string& root : files.drives()) {
        if (files.driveType(root) == DriveType::CdRom) roots.push_back(root);
    }
    return roots;
}

std::string CdDrive(FileSystem& files, const std::string& named) {
    if (!named.empty()) return JoinPath(named, "");
    const std::vector<std::string> roots = CdDrives(files);
    for (const std::string& root : roots) {
        if (files.folderExists(root)) return root;
    }
    return roots.empty() ? std::string() : roots.front();
}

std::string CdTrack(FileSystem& files, const std::string& path, const std::string& named) {
    if (files.fileExists(path)) return path;
    const std::vector<std::string> roots = named.empty() ? CdDrives(files) : std::vector{JoinPath(named, "")};
    for (const std::string& root : roots) {
        const std::string track = JoinPath(root, FileNameOf(path));
        if (files.fileExists(track)) return track;
    }
    return path;
}

}  // namespace quenlox
