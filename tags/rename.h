// Renaming a media file on the disk: what is refused, what is told, and who follows. On the user-interface thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quenlox {

class Dialogs;
class FileSystem;
class Transport;

// What the default format gives for a file without artist begins with an empty pair of parentheses: such a name, and an
// empty one, is taken for a slip. Blanks around the name do not count.
bool IsAcceptableFileName(std::string_view name);
// True for a name with "\" or "/" in it, which would move the file.
bool LeadsElsewhere(std::string_view name);

enum class RenameResult { Refused, Failed, Done };

struct RenameFollowers {
    std::function<void(const std::string& from, const std::string& to)> lists;  // rows that show the old path
    std::function<void()> browser;
    std::function<void(const std::string& from, const std::string& to)>
        sideFiles{};  // before the track is opened again
};

// The files that belong to a track by bearing its name, those there are: lyrics beside it and in the lyrics folder, and
// its picture in the picture folder. Folders that are empty texts are not looked in.
std::vector<std::string> SideFilesOf(FileSystem& files, const std::string& track, const std::string& lyricsFolder,
                                     const std::string& pictureFolder);
// Gives them the base name of `track`, each in its own folder. The number of those that could not be renamed.
int RenameSideFiles(FileSystem& files, const std::vector<std::string>& sideFiles, const std::string& track);

// Gives `file` the name `name` in its own folder; a message says what went wrong. The file that is open is closed for
// it; after a failure it stays closed, after a success CurrentFile is the new path and the track goes on where it was.
// Characters that no file name may have are left to the file system to refuse, save "\" and "/", which would move the
// file. `newPath` is set when done.
RenameResult RenameFile(FileSystem& files, Dialogs& dialogs, Transport& transport, const std::string& file,
                        std::string_view name, const RenameFollowers& followers, std::string& newPath);

}  // namespace quenlox
