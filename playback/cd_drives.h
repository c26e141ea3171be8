// Which drive is meant by "the audio CD". Drives count by their type, and by whether a disc is in; the user may have
// named one. Looks at the disk; on the user-interface thread.
#pragma once

#include <string>
#include <vector>

namespace quenlox {

class FileSystem;

// Roots of the drives that take discs, "D:\\" and so on.
std::vector<std::string> CdDrives(FileSystem& files);

// Root of the drive whose tracks are to be listed: the named one ("D:"; empty for none), else the first with a disc in
// it, else the first. Empty when there is no such drive.
std::string CdDrive(FileSystem& files, const std::string& named);

// Where a track is that was remembered as `path`: drives change their letters. When nothing is there, the track of the
// same name on the named drive, or on any with a disc when none is named; else `path` itself.
std::string CdTrack(FileSystem& files, const std::string& path, const std::string& named);

}  // namespace quenlox
